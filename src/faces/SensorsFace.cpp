#include "faces/SensorsFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "readings/ReadingsBoard.h"
#include "text/L.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

QString kindTitle(SensorKind kind) {
    switch (kind) {
    case SensorKind::soc:
        return L("sensors.kind.soc", QStringLiteral("Processor"));
    case SensorKind::battery:
        return L("sensors.kind.battery", QStringLiteral("Battery"));
    case SensorKind::storage:
        return L("sensors.kind.storage", QStringLiteral("Storage"));
    }
    return {};
}

// Where a processor's die counts as hot.
constexpr double hotCelsius = 85;

QString noFans() {
    return L("sensors.noFans", QStringLiteral("No fans reported"));
}

const SensorReading* reading(const SensorSnapshot& snapshot, SensorKind kind) {
    const auto found = std::find_if(snapshot.temperatures.begin(), snapshot.temperatures.end(),
                                    [&](const SensorReading& r) { return r.kind == kind; });
    return found != snapshot.temperatures.end() ? &*found : nullptr;
}

// One line of the list beside or under the hero.
struct Row {
    QString title;
    QString value;
    QColor color;
};

// What one paint shows, read once from the board.
struct View {
    const FaceContext& context;
    const SensorSnapshot* snapshot = nullptr;
    bool fahrenheit = false;
    std::optional<SensorReading> hero;

    // Read, but nothing found: no temperature, no fan.
    bool empty() const {
        return snapshot && snapshot->temperatures.isEmpty() && snapshot->others.isEmpty() &&
               snapshot->fans.isEmpty();
    }
    QString heroTitle() const { return kindTitle(hero ? hero->kind : SensorKind::soc); }
    QString heroText() const {
        return SensorsFace::degrees(hero ? std::optional(hero->celsius) : std::nullopt, fahrenheit);
    }
    // The warning hue only once the die runs hot.
    bool hot() const { return hero && hero->kind == SensorKind::soc && hero->celsius > hotCelsius; }
    QColor heroColor() const { return hot() ? ReadingKit::warning(context) : context.primary(); }

    // The figures beside the hero: the other kinds, the fans, then, where asked, the sensors of
    // no kind.
    QList<Row> rows(bool withOthers) const {
        QList<Row> out;
        const QColor ink = context.primary();
        for (const SensorKind kind : {SensorKind::soc, SensorKind::battery, SensorKind::storage}) {
            if (hero && hero->kind == kind) {
                continue;
            }
            const SensorReading* found = snapshot ? reading(*snapshot, kind) : nullptr;
            if (found != nullptr) {
                out << Row{kindTitle(kind), SensorsFace::degrees(found->celsius, fahrenheit), ink};
            } else if (kind != SensorKind::soc) {
                out << Row{kindTitle(kind), ReadingText::missing(), context.secondary()};
            }
        }
        if (!snapshot) {
            out << Row{L("sensors.fans", QStringLiteral("Fans")), ReadingText::missing(),
                       context.secondary()};
        } else if (!snapshot->hasFans || snapshot->fans.isEmpty()) {
            out << Row{L("sensors.fans", QStringLiteral("Fans")), noFans(), context.secondary()};
        } else if (!withOthers && snapshot->fans.size() > 1) {
            // Short of room, the fastest fan speaks for them all.
            out << Row{
                L("sensors.fans", QStringLiteral("Fans")),
                SensorsFace::rpm(*std::max_element(snapshot->fans.begin(), snapshot->fans.end())),
                ink};
        } else {
            for (qsizetype i = 0; i < snapshot->fans.size(); ++i) {
                const QString title =
                    snapshot->fans.size() == 1
                        ? L("sensors.fan", QStringLiteral("Fan"))
                        : L("sensors.fanNumbered", QStringLiteral("Fan %1")).arg(i + 1);
                out << Row{title, SensorsFace::rpm(snapshot->fans.at(i)), ink};
            }
        }
        if (withOthers && snapshot) {
            for (const SensorValue& other : snapshot->others) {
                out << Row{other.label, SensorsFace::degrees(other.celsius, fahrenheit), ink};
            }
        }
        return out;
    }
};

// Rows of title and value, as many as fit at a readable height.
void drawRows(QPainter& painter, const View& v, const QRectF& rect, const QList<Row>& rows,
              qreal maxLine, bool stacked) {
    if (rows.isEmpty()) {
        return;
    }
    const qreal perRow = stacked ? 2 : 1;
    // Rows keep a readable height; those that do not fit are left out, the least telling last.
    const qreal line = std::clamp(rect.height() / (static_cast<qreal>(rows.size()) * perRow),
                                  std::min<qreal>(maxLine, 16), maxLine);
    const int count =
        std::min(static_cast<int>(rect.height() / (line * perRow)), static_cast<int>(rows.size()));
    // One size for all rows, at which every title fits beside its value.
    qreal size = line * 0.7;
    while (!stacked && size > 9) {
        const QFontMetricsF plain(FaceKit::font(size));
        const QFontMetricsF bold(FaceKit::font(size, QFont::DemiBold));
        const bool fits = std::all_of(rows.begin(), rows.begin() + count, [&](const Row& r) {
            return plain.horizontalAdvance(r.title) + bold.horizontalAdvance(r.value) + 8 <=
                   rect.width();
        });
        if (fits) {
            break;
        }
        size -= 0.5;
    }
    const QFont title = FaceKit::font(size);
    const QFont value = FaceKit::font(size, QFont::DemiBold);
    for (int i = 0; i < count; ++i) {
        const Row& r = rows.at(i);
        const QRectF row(rect.left(), rect.top() + i * line * perRow, rect.width(), line * perRow);
        if (stacked) {
            FaceKit::drawElided(painter, v.context, row.adjusted(0, 0, 0, -line), r.title, title,
                                v.context.secondary(), Qt::AlignLeft | Qt::AlignVCenter);
            FaceKit::drawFitted(painter, v.context, row.adjusted(0, line, 0, 0), r.value,
                                QFont::DemiBold, r.color, Qt::AlignLeft | Qt::AlignVCenter,
                                value.pixelSize());
            continue;
        }
        const qreal valueWidth = QFontMetricsF(value).horizontalAdvance(r.value);
        FaceKit::drawElided(painter, v.context, row, r.value, value, r.color,
                            Qt::AlignRight | Qt::AlignVCenter);
        FaceKit::drawElided(painter, v.context, row.adjusted(0, 0, -valueWidth - 8, 0), r.title,
                            title, v.context.secondary(), Qt::AlignLeft | Qt::AlignVCenter);
    }
}

// The hero's title over its figure.
QRectF drawHero(QPainter& painter, const View& v, const QRectF& rect) {
    const qreal titleHeight = std::clamp(rect.height() * 0.22, 11.0, 16.0);
    FaceKit::drawFitted(painter, v.context,
                        QRectF(rect.left(), rect.top(), rect.width(), titleHeight), v.heroTitle(),
                        QFont::DemiBold, v.context.secondary(), Qt::AlignLeft | Qt::AlignVCenter,
                        titleHeight * 0.85);
    const QRectF figure(rect.left(), rect.top() + titleHeight, rect.width(),
                        rect.height() - titleHeight);
    return FaceKit::drawFitted(painter, v.context, figure, v.heroText(), QFont::Light,
                               v.heroColor(), Qt::AlignLeft | Qt::AlignVCenter,
                               figure.height() * 0.95);
}

void drawHistory(QPainter& painter, const View& v, const QRectF& rect) {
    const QList<double> values =
        SensorsFace::history(v.context.readings, v.hero ? v.hero->kind : SensorKind::soc);
    ReadingKit::drawChartField(painter, v.context, rect);
    if (values.isEmpty()) {
        return;
    }
    // A few degrees of headroom keep a steady temperature a steady line.
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    const double floor = std::floor(*low - 3);
    QList<double> above;
    for (const double value : values) {
        above << value - floor;
    }
    ReadingKit::drawArea(painter, rect, above, ReadingsBoard::historyLength,
                         std::ceil(*high + 3) - floor,
                         v.hot() ? v.heroColor() : v.context.accent());
}

// Text wrapped into a box at the largest size, from `most` down to `least`, at which it fits
// whole in at most `lines` lines.
struct Wrapped {
    QString text;
    QFont font;
    QSizeF size;
    bool fits = false;
};

Wrapped wrapped(const QString& text, const QSizeF& box, QFont::Weight weight, qreal most,
                qreal least, int lines) {
    for (qreal size = most; size >= least; size -= 0.5) {
        const QFont font = FaceKit::font(size, weight);
        const QFontMetricsF metrics(font);
        const QRectF need =
            metrics.boundingRect(QRectF(QPointF(), box), Qt::AlignLeft | Qt::TextWordWrap, text);
        if (need.height() <= box.height() && need.width() <= box.width() + 0.5 &&
            need.height() < metrics.lineSpacing() * (lines + 0.5)) {
            return {text, font, need.size(), true};
        }
    }
    return {};
}

void drawWrapped(QPainter& painter, const Wrapped& w, const QRectF& box, Qt::Alignment align,
                 const QColor& color) {
    painter.setFont(w.font);
    painter.setPen(color);
    painter.drawText(box, static_cast<int>(align | Qt::AlignTop | Qt::TextWordWrap), w.text);
}

// A thermometer and a plain sentence: this machine reports no temperatures.
void drawNothingReadable(QPainter& painter, const View& v, const QRectF& rect) {
    const FaceContext& c = v.context;
    const QString why = L("sensors.noneWhy", QStringLiteral("This computer reports no "
                                                            "temperatures or fan speeds; virtual "
                                                            "machines usually have none."));
    // Where there is room, what the source could not find follows, for whoever digs further.
    const QString found = v.snapshot && !v.snapshot->missing.isEmpty()
                              ? why + QLatin1Char(' ') + v.snapshot->missing.first()
                              : why;
    const bool beside = rect.width() > rect.height() * 1.6;
    const qreal side = std::min({rect.height() * (beside ? 0.7 : 0.36), rect.width() * 0.5, 56.0});
    const QSizeF room = beside ? QSizeF(rect.width() - side - 12, rect.height())
                               : QSizeF(rect.width(), rect.height() - side - 6);
    const qreal most = std::clamp(room.height() * 0.22, 11.0, 18.0);
    const QString headline = L("sensors.none", QStringLiteral("No temperature sensors"));
    const QString shortHeadline = L("sensors.noneShort", QStringLiteral("No sensors"));
    // One line reads better than two, and a shorter word better than a tiny one.
    Wrapped head =
        wrapped(headline, room, QFont::DemiBold, most, std::min<qreal>(most * 0.7, 11), 1);
    for (const auto& [text, lines] :
         {std::pair(shortHeadline, 1), std::pair(headline, 2), std::pair(shortHeadline, 2)}) {
        if (!head.fits) {
            head = wrapped(text, room, QFont::DemiBold, most, 8, lines);
        }
    }
    // A reason cut short says less than none.
    const QSizeF left(room.width(), room.height() - head.size.height() - 3);
    const qreal reasonSize = std::min<qreal>(most * 0.72, 12.5);
    Wrapped reason = wrapped(found, left, QFont::Normal, reasonSize, 9, 8);
    if (!reason.fits) {
        reason = wrapped(why, left, QFont::Normal, reasonSize, 8.5, 8);
    }
    const qreal block = head.size.height() + (reason.fits ? reason.size.height() + 3 : 0);
    QRectF icon;
    QRectF text;
    if (beside) {
        icon = QRectF(rect.left(), rect.center().y() - side / 2, side, side);
        text = QRectF(icon.right() + 12, rect.center().y() - block / 2, room.width(), block);
    } else {
        const qreal top = std::max(rect.top(), rect.center().y() - (side + 6 + block) / 2);
        icon = QRectF(rect.center().x() - side / 2, top, side, side);
        text = QRectF(rect.left(), icon.bottom() + 6, rect.width(), block);
    }
    QColor badge = c.accent();
    badge.setAlphaF(0.16F);
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(badge);
    painter.drawEllipse(icon);
    FaceKit::drawSymbol(painter, c, c.metadata.symbol,
                        icon.adjusted(side * 0.22, side * 0.22, -side * 0.22, -side * 0.22),
                        c.accent(), c.metadata.displayName);
    const Qt::Alignment align = beside ? Qt::AlignLeft : Qt::AlignHCenter;
    if (head.fits) {
        drawWrapped(painter, head, text, align, c.primary());
    }
    if (head.fits && reason.fits) {
        drawWrapped(painter, reason, text.adjusted(0, head.size.height() + 3, 0, 0), align,
                    c.secondary());
    }
    painter.restore();
}

} // namespace

std::optional<TimeGrain> SensorsFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

ReadingFeeds SensorsFace::feeds(WidgetSize, const WidgetSettings&) const {
    return ReadingFeed::sensors;
}

bool SensorsFace::fahrenheit(const QString& unit) {
    if (unit == QLatin1String("f")) {
        return true;
    }
    if (unit == QLatin1String("c")) {
        return false;
    }
    return QLocale().measurementSystem() == QLocale::ImperialUSSystem;
}

QString SensorsFace::degrees(std::optional<double> celsius, bool fahrenheit) {
    if (!celsius || !std::isfinite(*celsius)) {
        return ReadingText::missing();
    }
    const double value = fahrenheit ? *celsius * 9.0 / 5.0 + 32.0 : *celsius;
    return QLocale().toString(static_cast<qlonglong>(std::llround(value))) +
           (fahrenheit ? QStringLiteral("\u00b0F") : QStringLiteral("\u00b0C"));
}

QString SensorsFace::rpm(double speed) {
    return L("sensors.rpm", QStringLiteral("%1 rpm"))
        .arg(QLocale().toString(static_cast<qlonglong>(std::llround(std::max(0.0, speed)))));
}

std::optional<SensorReading> SensorsFace::hero(const SensorSnapshot& snapshot) {
    if (const SensorReading* soc = reading(snapshot, SensorKind::soc)) {
        return *soc;
    }
    if (!snapshot.temperatures.isEmpty()) {
        return snapshot.temperatures.first();
    }
    return std::nullopt;
}

QList<double> SensorsFace::history(const ReadingsBoard* board, SensorKind kind) {
    QList<double> out;
    if (board == nullptr) {
        return out;
    }
    for (const SensorSnapshot& s : board->sensorHistory) {
        for (const SensorReading& r : s.temperatures) {
            if (r.kind == kind) {
                out << r.celsius;
            }
        }
    }
    return out;
}

void SensorsFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const ReadingsBoard* board = context.readings;
    View v{context, board && board->sensors ? &*board->sensors : nullptr,
           fahrenheit(context.setting(QStringLiteral("unit"))), std::nullopt};
    if (v.snapshot) {
        v.hero = hero(*v.snapshot);
    }
    if (v.empty()) {
        drawNothingReadable(painter, v, rect);
        return;
    }

    switch (context.size) {
    case WidgetSize::small: {
        const qreal bottomLine = rect.height() * 0.2;
        drawHero(painter, v, rect.adjusted(0, 0, 0, -bottomLine));
        const QList<Row> rows = v.rows(false);
        // The fans' line: the row the small tile has room for.
        const Row& last = rows.last();
        FaceKit::drawFitted(
            painter, context,
            QRectF(rect.left(), rect.bottom() - bottomLine, rect.width(), bottomLine),
            last.value == noFans() ? last.value : last.title + QLatin1Char(' ') + last.value,
            QFont::Normal, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, bottomLine * 0.8);
        return;
    }
    case WidgetSize::tall: {
        drawHero(painter, v, QRectF(rect.left(), rect.top(), rect.width(), 60));
        drawRows(painter, v, QRectF(rect.left(), rect.top() + 70, rect.width(), rect.height() - 70),
                 v.rows(false), 19, true);
        return;
    }
    case WidgetSize::wide: {
        const qreal split = rect.width() * 0.38;
        drawHero(painter, v, QRectF(rect.left(), rect.top(), split, rect.height()));
        drawRows(
            painter, v,
            QRectF(rect.left() + split + 12, rect.top(), rect.width() - split - 12, rect.height()),
            v.rows(false), 18, false);
        return;
    }
    case WidgetSize::large: {
        const QRectF heroRect(rect.left(), rect.top(), rect.width() * 0.55, 62);
        drawHero(painter, v, heroRect);
        drawHistory(
            painter, v,
            QRectF(rect.left() + rect.width() * 0.58, rect.top() + 18, rect.width() * 0.42, 44));
        drawRows(painter, v,
                 QRectF(rect.left(), heroRect.bottom() + 10, rect.width(),
                        rect.bottom() - heroRect.bottom() - 10),
                 v.rows(true), 20, false);
        return;
    }
    default: {
        // Wide and tall: the hero over its history on the left, every figure on the right.
        const qreal colWidth = (rect.width() - 20) / 2;
        const QRectF left(rect.left(), rect.top(), colWidth, rect.height());
        drawHero(painter, v, QRectF(left.left(), left.top(), left.width(), 70));
        drawHistory(painter, v,
                    QRectF(left.left(), left.top() + 82, left.width(), left.height() - 82));
        drawRows(painter, v, QRectF(rect.right() - colWidth, rect.top(), colWidth, rect.height()),
                 v.rows(true), 19, false);
        return;
    }
    }
}

} // namespace tw
