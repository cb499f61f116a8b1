#include "faces/WorldClockFace.h"

#include "faces/AnalogDial.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "text/L.h"

#include <QLocale>
#include <QPainter>
#include <QTimeZone>

#include <array>

namespace tw {

namespace {

constexpr std::array kCities{
    "America/New_York",    "Europe/London", "Asia/Tokyo",     "Australia/Sydney",
    "America/Los_Angeles", "Europe/Paris",  "Asia/Dubai",     "Asia/Singapore",
    "America/Sao_Paulo",   "Asia/Kolkata",  "Asia/Hong_Kong", "Pacific/Auckland",
};

int cityCount(WidgetSize size) {
    switch (size) {
    case WidgetSize::small:
        return 2;
    case WidgetSize::wide:
        return 3;
    case WidgetSize::large:
        return 4;
    case WidgetSize::wideTall:
        return 6;
    case WidgetSize::huge:
        return 9;
    case WidgetSize::grand:
        return 12;
    default:
        return 3;
    }
}

struct City {
    QString name;
    QDateTime time;
    int offset;   // seconds ahead of here
    int dayShift; // calendar days ahead of here
};

City city(const QString& zoneId, const QDateTime& now, bool isHere) {
    const QTimeZone zone = FaceKit::zone(zoneId);
    const QDateTime there = now.toTimeZone(zone);
    const QDateTime here = now.toTimeZone(QTimeZone::systemTimeZone());
    const QString name =
        isHere ? L("worldclock.here", QStringLiteral("Here")) : FaceKit::cityName(zoneId);
    return {name, there, there.offsetFromUtc() - here.offsetFromUtc(),
            static_cast<int>(here.date().daysTo(there.date()))};
}

QString dayText(const City& c) {
    if (c.dayShift > 0) {
        return L("worldclock.tomorrow", QStringLiteral("Tomorrow"));
    }
    if (c.dayShift < 0) {
        return L("worldclock.yesterday", QStringLiteral("Yesterday"));
    }
    return L("worldclock.today", QStringLiteral("Today"));
}

} // namespace

std::optional<TimeGrain> WorldClockFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

QStringList WorldClockFace::zones(WidgetSize size) {
    const QString here = QString::fromUtf8(QTimeZone::systemTimeZoneId());
    QStringList out{here};
    for (const char* id : kCities) {
        if (out.size() >= cityCount(size)) {
            break;
        }
        if (QLatin1String(id) != here) {
            out << QLatin1String(id);
        }
    }
    return out;
}

QString WorldClockFace::offsetText(int seconds) {
    if (seconds == 0) {
        return {};
    }
    const int minutes = std::abs(seconds) / 60;
    QString text = (seconds > 0 ? QStringLiteral("+") : QStringLiteral("\u2212")) +
                   QString::number(minutes / 60);
    if (minutes % 60 != 0) {
        text += QStringLiteral(":%1").arg(minutes % 60, 2, 10, QLatin1Char('0'));
    }
    return text + QLatin1Char('h');
}

void WorldClockFace::paint(QPainter& painter, const QRectF& rect,
                           const FaceContext& context) const {
    const QStringList ids = zones(context.size);
    const bool h24 = FaceKit::uses24Hour(context);
    QList<City> cities;
    for (qsizetype i = 0; i < ids.size(); ++i) {
        cities << city(ids.at(i), context.now, i == 0);
    }
    const auto n = static_cast<int>(cities.size());
    auto timeText = [&](const City& c) {
        QString t = FaceKit::hoursMinutes(c.time.time(), h24);
        return h24 ? t : t + QLatin1Char(' ') + FaceKit::dayHalf(c.time.time());
    };
    auto detail = [&](const City& c) {
        const QString off = offsetText(c.offset);
        return off.isEmpty() ? dayText(c) : dayText(c) + QStringLiteral(", ") + off;
    };
    // Where room is short the offset alone says enough, unless the day differs too.
    auto shortDetail = [&](const City& c) {
        const QString off = offsetText(c.offset);
        return off.isEmpty() || c.dayShift != 0 ? detail(c) : off;
    };

    if (context.size == WidgetSize::huge || context.size == WidgetSize::grand) {
        // Dials in a grid: columns by the width, three rows.
        const int cols = context.size == WidgetSize::grand ? 4 : 3;
        const int rowsCount = (n + cols - 1) / cols;
        const qreal cw = rect.width() / cols;
        const qreal ch = rect.height() / rowsCount;
        for (int i = 0; i < n; ++i) {
            const QRectF cell(rect.left() + (i % cols) * cw, rect.top() + (i / cols) * ch, cw, ch);
            const qreal labelHeight = ch * 0.3;
            const qreal dialSide = std::min(cw * 0.8, ch - labelHeight - 4);
            const QRectF dial(cell.center().x() - dialSide / 2, cell.top() + 2, dialSide, dialSide);
            AnalogDial::draw(painter, dial, cities.at(i).time.time(), context,
                             AnalogDial::Hands::HoursMinutes, AnalogDial::Detail::Plain,
                             AnalogDial::Daylight::Shade);
            const QRectF label(cell.left() + 2, dial.bottom() + 2, cell.width() - 4,
                               labelHeight * 0.5);
            FaceKit::drawElided(painter, context, label, cities.at(i).name,
                                FaceKit::font(labelHeight * 0.38, QFont::DemiBold),
                                i == 0 ? context.accent() : context.primary(), Qt::AlignCenter);
            FaceKit::drawElided(
                painter, context, label.translated(0, label.height()),
                timeText(cities.at(i)) + QLatin1Char(' ') + offsetText(cities.at(i).offset),
                FaceKit::font(labelHeight * 0.34), context.secondary(), Qt::AlignCenter);
        }
        return;
    }

    // One size for each kind of text, so that no city's time looks larger than another's.
    auto common = [&](auto textOf, const QSizeF& box, QFont::Weight weight, qreal most) {
        qreal size = most;
        for (const City& c : cities) {
            size = std::min(size, FaceKit::fittingPixelSize(textOf(c), box, weight, most));
        }
        return size;
    };
    const auto nameOf = [](const City& c) { return c.name; };
    // Narrow columns: the time alone, its half of the day going to the line below.
    const auto bareTime = [&](const City& c) { return FaceKit::hoursMinutes(c.time.time(), h24); };
    const auto columnDetail = [&](const City& c) {
        return h24 ? shortDetail(c)
                   : FaceKit::dayHalf(c.time.time()) + QStringLiteral(" \u00b7 ") + shortDetail(c);
    };

    const bool columnsLayout =
        context.size == WidgetSize::wide || context.size == WidgetSize::wideTall;
    if (columnsLayout) {
        // Cities side by side: name, time, day; two rows on the bigger tile.
        const int cols = 3;
        const int rowsCount = (n + cols - 1) / cols;
        const qreal cw = rect.width() / cols;
        const qreal ch = rect.height() / rowsCount;
        for (int i = 0; i < n; ++i) {
            const QRectF cell(rect.left() + (i % cols) * cw, rect.top() + (i / cols) * ch, cw, ch);
            const qreal line = ch / 4;
            const QSizeF box(cw - 8, line);
            FaceKit::drawFitted(painter, context, QRectF(cell.left() + 4, cell.top(), cw - 8, line),
                                cities.at(i).name, QFont::DemiBold,
                                i == 0 ? context.accent() : context.secondary(),
                                Qt::AlignLeft | Qt::AlignVCenter,
                                common(nameOf, box, QFont::DemiBold, line * 0.72));
            FaceKit::drawFitted(
                painter, context, QRectF(cell.left() + 4, cell.top() + line, cw - 8, line * 1.9),
                bareTime(cities.at(i)), QFont::Light, context.primary(),
                Qt::AlignLeft | Qt::AlignVCenter,
                common(bareTime, QSizeF(cw - 8, line * 1.9), QFont::Light, line * 1.7));
            FaceKit::drawFitted(painter, context,
                                QRectF(cell.left() + 4, cell.top() + line * 2.95, cw - 8, line),
                                columnDetail(cities.at(i)), QFont::Normal, context.secondary(),
                                Qt::AlignLeft | Qt::AlignVCenter,
                                common(columnDetail, box, QFont::Normal, line * 0.62));
        }
        return;
    }

    // A list: name and day on the left, time on the right, a hairline between rows.
    const qreal rh = rect.height() / n;
    for (int i = 0; i < n; ++i) {
        const QRectF row(rect.left(), rect.top() + i * rh, rect.width(), rh);
        if (rh < 40) {
            // Small: the name over the time.
            FaceKit::drawFitted(
                painter, context, QRectF(row.left(), row.top(), row.width(), rh * 0.36),
                cities.at(i).name, QFont::DemiBold, i == 0 ? context.accent() : context.secondary(),
                Qt::AlignLeft | Qt::AlignVCenter, rh * 0.3);
            FaceKit::drawFitted(
                painter, context, QRectF(row.left(), row.top() + rh * 0.36, row.width(), rh * 0.6),
                timeText(cities.at(i)), QFont::Light, context.primary(),
                Qt::AlignLeft | Qt::AlignVCenter,
                common(timeText, QSizeF(row.width(), rh * 0.6), QFont::Light, rh * 0.55));
            continue;
        }
        const QRectF timeRect(row.left() + row.width() * 0.45, row.top(), row.width() * 0.55,
                              row.height());
        FaceKit::drawFitted(painter, context, timeRect.adjusted(0, rh * 0.12, 0, -rh * 0.12),
                            timeText(cities.at(i)), QFont::Light, context.primary(),
                            Qt::AlignRight | Qt::AlignVCenter,
                            common(timeText, timeRect.adjusted(0, rh * 0.12, 0, -rh * 0.12).size(),
                                   QFont::Light, rh * 0.5));
        FaceKit::drawFitted(
            painter, context, QRectF(row.left(), row.top(), row.width() * 0.5, row.height() * 0.55),
            cities.at(i).name, QFont::DemiBold, i == 0 ? context.accent() : context.primary(),
            Qt::AlignLeft | Qt::AlignBottom, rh * 0.26);
        FaceKit::drawFitted(painter, context,
                            QRectF(row.left(), row.top() + row.height() * 0.55, row.width() * 0.5,
                                   row.height() * 0.4),
                            detail(cities.at(i)), QFont::Normal, context.secondary(),
                            Qt::AlignLeft | Qt::AlignTop, rh * 0.2);
        if (i > 0) {
            painter.setPen(QPen(context.separator(), 0.5));
            painter.drawLine(QPointF(row.left(), row.top()), QPointF(row.right(), row.top()));
        }
    }
}

} // namespace tw
