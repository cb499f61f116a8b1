#include "faces/NetworkFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "text/L.h"

#include <QPainter>

namespace tw {

namespace {

using Direction = NetworkFace::Direction;

struct Shown {
    // Null before the first reading.
    const InterfaceRate* rate = nullptr;
    QList<double> down;
    QList<double> up;
};

QString arrow(Direction direction) {
    return direction == Direction::down ? QStringLiteral("arrow.down") : QStringLiteral("arrow.up");
}

QString directionName(Direction direction) {
    return direction == Direction::down ? L("network.download", QStringLiteral("Download"))
                                        : L("network.upload", QStringLiteral("Upload"));
}

QColor hue(const FaceContext& context, Direction direction) {
    return direction == Direction::down ? context.accent() : context.secondary();
}

QString rateText(const Shown& shown, Direction direction) {
    if (shown.rate == nullptr) {
        return ReadingText::missing();
    }
    return ReadingText::rate(direction == Direction::down ? shown.rate->receivedPerSecond
                                                          : shown.rate->sentPerSecond);
}

// The symbol of the interface's kind and its name; its kind in words at the right where there is
// room.
void drawHeader(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const Shown& shown, bool kindInWords) {
    const bool wireless = shown.rate != nullptr && shown.rate->wireless;
    const QString symbol = shown.rate == nullptr ? QStringLiteral("network")
                           : wireless            ? QStringLiteral("wifi")
                                                 : QStringLiteral("cable.connector");
    const qreal side = rect.height();
    FaceKit::drawSymbol(painter, context, symbol, QRectF(rect.left(), rect.top(), side, side),
                        context.accent(), symbol);
    const QString name = shown.rate == nullptr ? L("widget.network.name", QStringLiteral("Network"))
                                               : shown.rate->interface;
    QRectF nameRect(rect.left() + side * 1.3, rect.top(), rect.width() - side * 1.3, side);
    if (kindInWords && shown.rate != nullptr) {
        const QString kind = wireless ? L("network.wireless", QStringLiteral("Wi-Fi"))
                                      : L("network.wired", QStringLiteral("Wired"));
        const QRectF used =
            FaceKit::drawFitted(painter, context, nameRect, kind, QFont::Normal,
                                context.secondary(), Qt::AlignRight | Qt::AlignVCenter, side * 0.8);
        nameRect.setRight(used.left() - side * 0.5);
    }
    FaceKit::drawFitted(painter, context, nameRect, name, QFont::DemiBold, context.primary(),
                        Qt::AlignLeft | Qt::AlignVCenter, side * 0.85);
}

// The arrow and the direction's name over the rate; with no room for the name, the arrow beside
// the rate.
void drawRate(QPainter& painter, const FaceContext& context, const QRectF& rect, const Shown& shown,
              Direction direction, bool named) {
    const QColor colour = hue(context, direction);
    if (!named) {
        const qreal side = std::min(rect.height() * 0.62, rect.width() * 0.25);
        FaceKit::drawSymbol(painter, context, arrow(direction),
                            QRectF(rect.left(), rect.center().y() - side / 2, side, side), colour,
                            arrow(direction));
        FaceKit::drawFitted(painter, context, rect.adjusted(side * 1.15, 0, 0, 0),
                            rateText(shown, direction), QFont::DemiBold, context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter, rect.height() * 0.8);
        return;
    }
    const qreal label = rect.height() * 0.34;
    FaceKit::drawSymbol(painter, context, arrow(direction),
                        QRectF(rect.left(), rect.top(), label, label), colour, arrow(direction));
    FaceKit::drawFitted(
        painter, context,
        QRectF(rect.left() + label * 1.15, rect.top(), rect.width() - label * 1.15, label),
        directionName(direction), QFont::Medium, context.secondary(),
        Qt::AlignLeft | Qt::AlignVCenter, label * 0.85);
    FaceKit::drawFitted(
        painter, context,
        QRectF(rect.left(), rect.top() + label, rect.width(), rect.height() - label),
        rateText(shown, direction), QFont::DemiBold, context.primary(),
        Qt::AlignLeft | Qt::AlignVCenter, (rect.height() - label) * 0.85);
}

double peak(const QList<double>& values) {
    double most = 0;
    for (double v : values) {
        most = std::max(most, v);
    }
    return most;
}

// Both directions on one scale, the upload over the download.
void drawBoth(QPainter& painter, const FaceContext& context, const QRectF& chart,
              const Shown& shown) {
    ReadingKit::drawChartField(painter, context, chart);
    // A floor for the scale, so that an idle line is not blown up to the full height.
    const double top = std::max({peak(shown.down), peak(shown.up), 1024.0});
    ReadingKit::drawArea(painter, chart, shown.down, ReadingsBoard::historyLength, top,
                         hue(context, Direction::down));
    ReadingKit::drawArea(painter, chart, shown.up, ReadingsBoard::historyLength, top,
                         hue(context, Direction::up));
}

// One direction on its own scale, its peak written in the top corner.
void drawOne(QPainter& painter, const FaceContext& context, const QRectF& rect, const Shown& shown,
             Direction direction) {
    const QList<double>& values = direction == Direction::down ? shown.down : shown.up;
    const qreal label = std::min(rect.height() * 0.22, 15.0);
    const QRectF chart = rect.adjusted(0, label * 1.1, 0, 0);
    ReadingKit::drawChartField(painter, context, chart);
    ReadingKit::drawArea(painter, chart, values, ReadingsBoard::historyLength,
                         std::max(peak(values), 1024.0), hue(context, direction));
    const QRectF head(rect.left(), rect.top(), rect.width(), label);
    FaceKit::drawFitted(painter, context, head, directionName(direction), QFont::Medium,
                        context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, label * 0.85);
    if (peak(values) > 0) {

        FaceKit::drawFitted(
            painter, context, head.adjusted(head.width() * 0.4, 0, 0, 0),
            L("network.peak", QStringLiteral("Peak %1")).arg(ReadingText::rate(peak(values))),
            QFont::Normal, context.secondary(), Qt::AlignRight | Qt::AlignVCenter, label * 0.85);
    }
}

void drawTotals(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const Shown& shown) {
    const QString received = shown.rate == nullptr
                                 ? ReadingText::missing()
                                 : ReadingText::bytes(static_cast<double>(shown.rate->received));
    const QString sent = shown.rate == nullptr
                             ? ReadingText::missing()
                             : ReadingText::bytes(static_cast<double>(shown.rate->sent));
    FaceKit::drawFitted(
        painter, context, rect,
        L("network.totals", QStringLiteral("%1 received \u00b7 %2 sent")).arg(received, sent),
        QFont::Normal, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, rect.height() * 0.8);
}

// The totals one above the other, for a narrow column.
void drawTotalLines(QPainter& painter, const FaceContext& context, const QRectF& rect,
                    const Shown& shown) {
    const QRectF top(rect.left(), rect.top(), rect.width(), rect.height() / 2);
    const QRectF bottom = top.translated(0, rect.height() / 2);
    const auto amount = [&](quint64 bytes) {
        return shown.rate == nullptr ? ReadingText::missing()
                                     : ReadingText::bytes(static_cast<double>(bytes));
    };
    FaceKit::drawFitted(painter, context, top,
                        L("network.received", QStringLiteral("%1 received"))
                            .arg(amount(shown.rate == nullptr ? 0 : shown.rate->received)),
                        QFont::Normal, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter,
                        top.height() * 0.8);
    FaceKit::drawFitted(painter, context, bottom,
                        L("network.sent", QStringLiteral("%1 sent"))
                            .arg(amount(shown.rate == nullptr ? 0 : shown.rate->sent)),
                        QFont::Normal, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter,
                        bottom.height() * 0.8);
}

// The other interfaces that are up, with their download rate, one to a line.
void drawOthers(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const Shown& shown) {
    if (context.readings == nullptr || !context.readings->network || shown.rate == nullptr) {
        return;
    }
    const qreal line = std::min(rect.height(), 18.0);
    qreal y = rect.top();
    for (const InterfaceRate& other : context.readings->network->interfaces) {
        if (!other.up || other.interface == shown.rate->interface) {
            continue;
        }
        if (y + line > rect.bottom() + 0.5) {
            break;
        }
        const QRectF row(rect.left(), y, rect.width(), line);
        FaceKit::drawFitted(painter, context, row.adjusted(0, 0, -row.width() * 0.5, 0),
                            other.interface, QFont::Medium, context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter, line * 0.75);
        FaceKit::drawFitted(painter, context, row.adjusted(row.width() * 0.5, 0, 0, 0),
                            QStringLiteral("\u2193 %1  \u2191 %2")
                                .arg(ReadingText::rate(other.receivedPerSecond),
                                     ReadingText::rate(other.sentPerSecond)),
                            QFont::Normal, context.secondary(), Qt::AlignRight | Qt::AlignVCenter,
                            line * 0.75);
        y += line;
    }
}

} // namespace

std::optional<TimeGrain> NetworkFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

ReadingFeeds NetworkFace::feeds(WidgetSize, const WidgetSettings&) const {
    return ReadingFeed::network;
}

const InterfaceRate* NetworkFace::chosen(const NetworkSnapshot& snapshot, const QString& name) {
    if (name.isEmpty()) {
        return snapshot.primary();
    }
    for (const InterfaceRate& rate : snapshot.interfaces) {
        if (rate.interface == name) {
            return &rate;
        }
    }
    return nullptr;
}

QList<double> NetworkFace::history(const QList<NetworkSnapshot>& readings, const QString& interface,
                                   Direction direction) {
    QList<double> out;
    out.reserve(readings.size());
    for (const NetworkSnapshot& reading : readings) {
        const InterfaceRate* rate = chosen(reading, interface);
        out << (rate == nullptr                ? 0.0
                : direction == Direction::down ? rate->receivedPerSecond
                                               : rate->sentPerSecond);
    }
    return out;
}

void NetworkFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const QString name = context.setting(QStringLiteral("interface"));
    Shown shown;
    if (context.readings != nullptr && context.readings->network) {
        shown.rate = chosen(*context.readings->network, name);
        if (shown.rate == nullptr || !shown.rate->up) {
            ReadingKit::drawNotice(
                painter, context, rect, QStringLiteral("wifi.slash"),
                L("network.offline", QStringLiteral("Offline")),
                name.isEmpty()
                    ? L("network.noneUp", QStringLiteral("No connection is up"))
                    : L("network.namedDown", QStringLiteral("%1 is not connected")).arg(name));
            return;
        }
        const WidgetSize size = context.size;
        if (size != WidgetSize::small && size != WidgetSize::wide) {
            shown.down =
                history(context.readings->networkHistory, shown.rate->interface, Direction::down);
            shown.up =
                history(context.readings->networkHistory, shown.rate->interface, Direction::up);
        }
    }

    const qreal w = rect.width();
    const qreal h = rect.height();
    switch (context.size) {
    case WidgetSize::small: {
        drawHeader(painter, context, QRectF(rect.left(), rect.top(), w, h * 0.2), shown, false);
        drawRate(painter, context, QRectF(rect.left(), rect.top() + h * 0.3, w, h * 0.32), shown,
                 Direction::down, false);
        drawRate(painter, context, QRectF(rect.left(), rect.top() + h * 0.68, w, h * 0.32), shown,
                 Direction::up, false);
        return;
    }
    case WidgetSize::wide:
    case WidgetSize::banner: {
        // The rates in two columns under the header; the banner adds the chart at the right.
        const qreal statsWidth = context.size == WidgetSize::banner ? w * 0.58 : w;
        drawHeader(painter, context, QRectF(rect.left(), rect.top(), statsWidth, h * 0.24), shown,
                   true);
        const QRectF body(rect.left(), rect.top() + h * 0.34, statsWidth, h * 0.66);
        drawRate(painter, context, body.adjusted(0, 0, -body.width() * 0.52, 0), shown,
                 Direction::down, true);
        drawRate(painter, context, body.adjusted(body.width() * 0.52, 0, 0, 0), shown,
                 Direction::up, true);
        if (context.size == WidgetSize::banner) {
            drawBoth(painter, context,
                     QRectF(rect.left() + statsWidth + w * 0.05, rect.top() + h * 0.06,
                            w - statsWidth - w * 0.05, h * 0.94),
                     shown);
        }
        return;
    }
    case WidgetSize::large: {
        drawHeader(painter, context, QRectF(rect.left(), rect.top(), w, h * 0.1), shown, true);
        const QRectF rates(rect.left(), rect.top() + h * 0.15, w, h * 0.26);
        drawRate(painter, context, rates.adjusted(0, 0, -w * 0.52, 0), shown, Direction::down,
                 true);
        drawRate(painter, context, rates.adjusted(w * 0.52, 0, 0, 0), shown, Direction::up, true);
        drawBoth(painter, context, QRectF(rect.left(), rect.top() + h * 0.47, w, h * 0.4), shown);
        drawTotals(painter, context, QRectF(rect.left(), rect.bottom() - h * 0.08, w, h * 0.08),
                   shown);
        return;
    }
    case WidgetSize::wideTall:
    case WidgetSize::panorama: {
        // The rates down the left with the totals at its foot; the history at the right, both
        // directions together on the smaller tile and apart on the wider one.
        drawHeader(painter, context, QRectF(rect.left(), rect.top(), w, h * 0.1), shown, true);
        const qreal left = context.size == WidgetSize::wideTall ? w * 0.38 : w * 0.3;
        const QRectF column(rect.left(), rect.top() + h * 0.16, left, h * 0.84);
        drawRate(painter, context, QRectF(column.left(), column.top(), left, h * 0.27), shown,
                 Direction::down, true);
        drawRate(painter, context, QRectF(column.left(), column.top() + h * 0.32, left, h * 0.27),
                 shown, Direction::up, true);
        drawTotalLines(painter, context,
                       QRectF(column.left(), rect.bottom() - h * 0.17, left, h * 0.17), shown);
        const QRectF charts(rect.left() + left + w * 0.04, column.top(), w - left - w * 0.04,
                            column.height());
        if (context.size == WidgetSize::wideTall) {
            drawBoth(painter, context, charts, shown);
        } else {
            drawOne(painter, context, charts.adjusted(0, 0, 0, -charts.height() * 0.54), shown,
                    Direction::down);
            drawOne(painter, context, charts.adjusted(0, charts.height() * 0.54, 0, 0), shown,
                    Direction::up);
        }
        return;
    }
    default: {
        // Huge and grand: the rates side by side, a chart for each direction, the totals and the
        // other interfaces that are up.
        drawHeader(painter, context, QRectF(rect.left(), rect.top(), w, h * 0.07), shown, true);
        const QRectF rates(rect.left(), rect.top() + h * 0.11, w, h * 0.17);
        drawRate(painter, context, rates.adjusted(0, 0, -w * 0.52, 0), shown, Direction::down,
                 true);
        drawRate(painter, context, rates.adjusted(w * 0.52, 0, 0, 0), shown, Direction::up, true);
        drawOne(painter, context, QRectF(rect.left(), rect.top() + h * 0.32, w, h * 0.24), shown,
                Direction::down);
        drawOne(painter, context, QRectF(rect.left(), rect.top() + h * 0.6, w, h * 0.24), shown,
                Direction::up);
        drawTotals(painter, context, QRectF(rect.left(), rect.top() + h * 0.87, w, h * 0.055),
                   shown);
        drawOthers(painter, context, QRectF(rect.left(), rect.top() + h * 0.94, w, h * 0.06),
                   shown);
        return;
    }
    }
}

} // namespace tw
