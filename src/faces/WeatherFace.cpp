#include "faces/WeatherFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"
#include "faces/ReadingKit.h"
#include "faces/WeatherNotice.h"
#include "faces/WeatherScene.h"
#include "text/L.h"
#include "weather/FixedLocation.h"
#include "weather/MockForecast.h"
#include "weather/WxScene.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

const QString kDash = QStringLiteral("\u2014");

bool isOff(const QString& value) {
    return value == QLatin1String("false") || value == QLatin1String("off") ||
           value == QLatin1String("0");
}

// The condition a manual tile shows; clear when the setting names none.
WxCondition manualCondition(const WidgetSettings& settings) {
    return wxConditionFromRawValue(settings.value(QStringLiteral("condition")))
        .value_or(WxCondition::clear);
}

// The colours of the figures: the glass's own, or white over the full sky.
struct Ink {
    QColor primary;
    QColor secondary;
    QColor faint;
    QColor accent;

    static Ink of(const FaceContext& context, bool light) {
        if (light) {
            return {Qt::white, QColor(255, 255, 255, 200), QColor(255, 255, 255, 60),
                    QColor(0xFF, 0xD6, 0x6E)};
        }
        return {context.primary(), context.secondary(), context.separator(), context.accent()};
    }
};

QString degrees(int value) {
    return QString::number(value) + QChar(0x00B0);
}

QString hiLo(const WxReading& r) {
    return L("weather.hilo", QStringLiteral("H:%1 L:%2")).arg(degrees(r.hi), degrees(r.lo));
}

QString feels(const WxReading& r) {
    return L("weather.feels", QStringLiteral("Feels like %1")).arg(degrees(r.feels));
}

QString clock(const std::optional<QDateTime>& at, bool h24) {
    if (!at || !at->isValid()) {
        return kDash;
    }
    const QString time = FaceKit::hoursMinutes(at->time(), h24);
    return h24 ? time : time + QLatin1Char(' ') + FaceKit::dayHalf(at->time());
}

// Everything one paint decides once.
struct View {
    const FaceContext& context;
    WeatherFace::Shown shown;
    WxReading reading;
    WxCondition condition = WxCondition::clear;
    bool night = false;
    QString city;
    bool approximate = false;
    WeatherScene::Frame frame;
    Ink ink;
    bool h24 = true;
};

QColor symbolColour(const QString& symbol, const Ink& ink) {
    if (symbol == QLatin1String("sun.max.fill")) {
        return {0xFF, 0xC8, 0x3D};
    }
    if (symbol == QLatin1String("moon.stars.fill") && ink.primary.lightness() > 128) {
        return {0xE8, 0xE6, 0xF5};
    }
    return ink.primary;
}

// Fog and thunder say more than the clouds and rain they count as.
QString conditionText(const View& v) {
    switch (v.frame.scene) {
    case WxScene::fog:
        return L("weather.cond.fog", QStringLiteral("Fog"));
    case WxScene::thunder:
        return L("weather.cond.thunder", QStringLiteral("Thunderstorm"));
    default:
        return text(v.condition);
    }
}

QString nowSymbol(const View& v) {
    switch (v.frame.scene) {
    case WxScene::fog:
        return QStringLiteral("cloud.fog.fill");
    case WxScene::thunder:
        return QStringLiteral("cloud.bolt.rain.fill");
    default:
        return conditionSymbol(v.condition, v.night);
    }
}

void symbolAt(QPainter& painter, const View& v, const QString& symbol, const QRectF& rect) {
    FaceKit::drawSymbol(painter, v.context, symbol, rect, symbolColour(symbol, v.ink), symbol);
}

// The city on one line, with its marks: "≈" before an approximate place, the stale sign after.
void drawCity(QPainter& painter, const View& v, const QRectF& rect, qreal pixelSize,
              Qt::Alignment alignment = Qt::AlignLeft) {
    const qreal mark = v.shown.stale ? pixelSize + 3 : 0;
    const QString text = v.approximate ? QStringLiteral("\u2248 ") + v.city : v.city;
    const QRectF room = rect.adjusted(alignment & Qt::AlignRight ? mark : 0, 0,
                                      alignment & Qt::AlignRight ? 0 : -mark, 0);
    const QFont font = FaceKit::font(pixelSize, QFont::DemiBold);
    const QString shownText = QFontMetricsF(font).elidedText(text, Qt::ElideRight, room.width());
    const QRectF taken =
        FaceKit::drawText(painter, v.context, room, int(alignment | Qt::AlignVCenter), shownText,
                          font, v.ink.primary);
    if (v.shown.stale) {
        const QRectF sign(taken.right() + 3, rect.center().y() - pixelSize / 2, pixelSize,
                          pixelSize);
        FaceKit::drawSymbol(painter, v.context, QStringLiteral("clock.arrow.circlepath"),
                            sign.intersected(rect), ReadingKit::warning(v.context),
                            QStringLiteral("!"));
    }
}

void drawLine(QPainter& painter, const View& v, const QRectF& rect, const QString& text,
              qreal pixelSize, const QColor& color, Qt::Alignment alignment = Qt::AlignLeft,
              QFont::Weight weight = QFont::Normal) {
    FaceKit::drawElided(painter, v.context, rect, text, FaceKit::font(pixelSize, weight), color,
                        alignment | Qt::AlignVCenter);
}

// The condition, shrunk rather than cut where its words are long ("Thunderstorm").
void drawCondition(QPainter& painter, const View& v, const QRectF& rect, qreal pixelSize) {
    FaceKit::drawFitted(painter, v.context, rect, conditionText(v), QFont::Medium, v.ink.primary,
                        Qt::AlignLeft | Qt::AlignVCenter, pixelSize);
}

void drawHero(QPainter& painter, const View& v, const QRectF& rect,
              Qt::Alignment alignment = Qt::AlignLeft) {
    FaceKit::drawFitted(painter, v.context, rect, degrees(v.reading.temp), QFont::Light,
                        v.ink.primary, alignment | Qt::AlignVCenter, rect.height() * 1.05);
}

// Sunrise and sunset on one line.
QString sunTimes(const View& v) {
    return QStringLiteral("\u2191%1  \u2193%2")
        .arg(clock(v.reading.sunrise, v.h24), clock(v.reading.sunset, v.h24));
}

// The next hours side by side: hour, symbol, temperature.
void drawHourRow(QPainter& painter, const View& v, const QRectF& rect, int columns) {
    const auto n = std::min<qsizetype>(columns, v.reading.hourly.size());
    if (n == 0) {
        drawLine(painter, v, rect, kDash, 12, v.ink.secondary, Qt::AlignCenter);
        return;
    }
    const qreal cw = rect.width() / static_cast<qreal>(n);
    const qreal line = std::min(rect.height() * 0.26, 13.0);
    for (qsizetype i = 0; i < n; ++i) {
        const WxHourEntry& hour = v.reading.hourly.at(i);
        const QRectF cell(rect.left() + cw * static_cast<qreal>(i), rect.top(), cw, rect.height());
        drawLine(painter, v, QRectF(cell.left(), cell.top(), cw, line), hour.hour, line * 0.82,
                 v.ink.secondary, Qt::AlignHCenter);
        const qreal side = std::min(cw * 0.7, cell.height() - 2 * line - 4);
        symbolAt(painter, v, hour.symbol,
                 QRectF(cell.center().x() - side / 2, cell.center().y() - side / 2, side, side));
        drawLine(painter, v, QRectF(cell.left(), cell.bottom() - line, cw, line),
                 degrees(hour.temp), line * 0.9, v.ink.primary, Qt::AlignHCenter, QFont::Medium);
    }
}

// Catmull-Rom through the points, as cubic pieces: smooth, and through every point.
QPainterPath smoothPath(const QList<QPointF>& points) {
    QPainterPath path;
    if (points.isEmpty()) {
        return path;
    }
    path.moveTo(points.first());
    for (qsizetype i = 0; i + 1 < points.size(); ++i) {
        const QPointF p0 = points.at(std::max<qsizetype>(0, i - 1));
        const QPointF p1 = points.at(i);
        const QPointF p2 = points.at(i + 1);
        const QPointF p3 = points.at(std::min(points.size() - 1, i + 2));
        path.cubicTo(p1 + (p2 - p0) / 6.0, p2 - (p3 - p1) / 6.0, p2);
    }
    return path;
}

// The next hours as a smooth line of temperatures, the extremes marked with their figures and
// hours labelled at a stride beneath.
void drawHourCurve(QPainter& painter, const View& v, const QRectF& rect) {
    const QList<WxHourEntry>& hours = v.reading.hourly;
    if (hours.size() < 2) {
        drawHourRow(painter, v, rect, 1);
        return;
    }
    const qreal labelRow = std::clamp(rect.height() * 0.2, 10.0, 14.0);
    const qreal inset = labelRow;
    // Room above for the peak's figure, below for the trough's and the hours'.
    const QRectF plot = rect.adjusted(6, inset, -6, -2 * labelRow - 2);
    const auto [lowest, highest] = std::minmax_element(
        hours.cbegin(), hours.cend(), [](const auto& a, const auto& b) { return a.temp < b.temp; });
    const double span = std::max(1, highest->temp - lowest->temp);
    QList<QPointF> points;
    const qreal step = plot.width() / static_cast<qreal>(hours.size() - 1);
    for (qsizetype i = 0; i < hours.size(); ++i) {
        const double up = (hours.at(i).temp - lowest->temp) / span;
        points << QPointF(plot.left() + step * static_cast<qreal>(i),
                          plot.bottom() - up * plot.height());
    }
    const QPainterPath line = smoothPath(points);
    QPainterPath area = line;
    area.lineTo(points.last().x(), plot.bottom() + labelRow);
    area.lineTo(points.first().x(), plot.bottom() + labelRow);
    area.closeSubpath();
    QLinearGradient fill(plot.topLeft(), plot.bottomLeft());
    QColor top = v.ink.accent;
    top.setAlpha(70);
    QColor bottom = v.ink.accent;
    bottom.setAlpha(0);
    fill.setColorAt(0, top);
    fill.setColorAt(1, bottom);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawPath(area);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(v.ink.accent, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(line);

    const qreal figure = labelRow * 0.85;
    for (qsizetype i : WeatherFace::extremes(hours)) {
        const QPointF at = points.at(i);
        painter.setPen(Qt::NoPen);
        painter.setBrush(v.ink.primary);
        painter.drawEllipse(at, 2.4, 2.4);
        const bool peak = hours.at(i).temp == highest->temp;
        const QRectF box(at.x() - 18, peak ? at.y() - labelRow - 2 : at.y() + 2, 36, labelRow);
        drawLine(painter, v, box.intersected(rect), degrees(hours.at(i).temp), figure,
                 v.ink.primary, Qt::AlignHCenter, QFont::DemiBold);
    }
    // The present, a ring on the line.
    painter.setPen(QPen(v.ink.primary, 1.4));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(points.first(), 3.2, 3.2);

    const int stride = WeatherFace::labelStride(hours.size(), plot.width());
    const qreal half = std::min(step * stride, 40.0) / 2;
    for (qsizetype i = 0; i < hours.size(); i += stride) {
        const qreal x = points.at(i).x();
        // The first label starts at its point: "Now" would be cut in half at the edge.
        const bool first = i == 0;
        const QRectF box(first ? rect.left() : x - half, rect.bottom() - labelRow, 2 * half,
                         labelRow);
        drawLine(painter, v, box.intersected(rect), hours.at(i).hour, labelRow * 0.8,
                 v.ink.secondary, first ? Qt::AlignLeft : Qt::AlignHCenter);
    }
}

// Days as rows: name, symbol, low, a bar of the day's range within the week's, high.
void drawDayRows(QPainter& painter, const View& v, const QRectF& rect, int rows) {
    const auto n = std::min<qsizetype>(rows, v.reading.daily.size());
    if (n == 0) {
        drawLine(painter, v, rect, kDash, 12, v.ink.secondary, Qt::AlignCenter);
        return;
    }
    int weekLo = v.reading.daily.first().lo;
    int weekHi = v.reading.daily.first().hi;
    for (qsizetype i = 0; i < n; ++i) {
        weekLo = std::min(weekLo, v.reading.daily.at(i).lo);
        weekHi = std::max(weekHi, v.reading.daily.at(i).hi);
    }
    const double weekSpan = std::max(1, weekHi - weekLo);
    const qreal rh = rect.height() / static_cast<qreal>(n);
    const qreal text = std::min(rh * 0.62, 13.0);
    const qreal dayWidth = std::min(rect.width() * 0.24, 44.0);
    const qreal figureWidth = text * 2.4;
    for (qsizetype i = 0; i < n; ++i) {
        const WxDayEntry& day = v.reading.daily.at(i);
        const QRectF row(rect.left(), rect.top() + rh * static_cast<qreal>(i), rect.width(), rh);
        drawLine(painter, v, QRectF(row.left(), row.top(), dayWidth, rh), day.day, text,
                 v.ink.primary, Qt::AlignLeft, QFont::Medium);
        const qreal side = std::min(rh * 0.8, 16.0);
        symbolAt(painter, v, day.symbol,
                 QRectF(row.left() + dayWidth, row.center().y() - side / 2, side, side));
        const QRectF lo(row.left() + dayWidth + side + 4, row.top(), figureWidth, rh);
        const QRectF hi(row.right() - figureWidth, row.top(), figureWidth, rh);
        drawLine(painter, v, lo, degrees(day.lo), text, v.ink.secondary, Qt::AlignRight);
        drawLine(painter, v, hi, degrees(day.hi), text, v.ink.primary, Qt::AlignRight);
        const QRectF track(lo.right() + 6, row.center().y() - 2, hi.left() - lo.right() - 12, 4);
        if (track.width() < 8) {
            continue;
        }
        const qreal from = track.left() + track.width() * (day.lo - weekLo) / weekSpan;
        const qreal to = track.left() + track.width() * (day.hi - weekLo) / weekSpan;
        QLinearGradient warmth(track.topLeft(), track.topRight());
        warmth.setColorAt(0, QColor(0x6C, 0xC4, 0xF5));
        warmth.setColorAt(1, QColor(0xFF, 0xB3, 0x47));
        FaceKit::drawBar(painter, track, 1.0, v.ink.faint, Qt::transparent);
        painter.setPen(Qt::NoPen);
        painter.setBrush(warmth);
        painter.drawRoundedRect(QRectF(from, track.top(), std::max(to - from, 4.0), 4), 2, 2);
    }
}

void paintSmall(QPainter& painter, const QRectF& r, const View& v) {
    const qreal line = r.height() * 0.17;
    const qreal side = line * 1.25;
    drawCity(painter, v, QRectF(r.left(), r.top(), r.width() - side - 2, line), line * 0.82);
    symbolAt(painter, v, nowSymbol(v), QRectF(r.right() - side, r.top(), side, side));
    drawHero(painter, v, QRectF(r.left(), r.top() + line, r.width(), r.height() - 3 * line));
    drawCondition(painter, v, QRectF(r.left(), r.bottom() - 2 * line, r.width(), line),
                  line * 0.78);
    drawLine(painter, v, QRectF(r.left(), r.bottom() - line, r.width(), line), hiLo(v.reading),
             line * 0.78, v.ink.secondary);
}

// City, temperature, condition and high/low in a column.
void paintSummaryColumn(QPainter& painter, const QRectF& r, const View& v, qreal line) {
    drawCity(painter, v, QRectF(r.left(), r.top(), r.width(), line), line * 0.82);
    const qreal heroHeight = r.height() - 3 * line;
    drawHero(painter, v, QRectF(r.left(), r.top() + line, r.width(), heroHeight));
    drawCondition(painter, v, QRectF(r.left(), r.top() + line + heroHeight, r.width(), line),
                  line * 0.8);
    drawLine(painter, v, QRectF(r.left(), r.bottom() - line, r.width(), line), hiLo(v.reading),
             line * 0.8, v.ink.secondary);
}

void paintWide(QPainter& painter, const QRectF& r, const View& v) {
    const qreal left = r.width() * 0.4;
    paintSummaryColumn(painter, QRectF(r.left(), r.top(), left, r.height()), v, r.height() * 0.17);
    const QRectF hours(r.left() + left + 6, r.top() + 2, r.width() - left - 6, r.height() - 4);
    const int columns = std::clamp(static_cast<int>(hours.width() / 24), 3, 6);
    drawHourRow(painter, v, hours, columns);
}

// The header of the larger sizes: city, hero and condition left; symbol, high/low, feels right.
void paintHeader(QPainter& painter, const QRectF& r, const View& v, bool withSun) {
    const qreal line = std::clamp(r.height() * 0.2, 11.0, 16.0);
    const qreal right = r.width() * 0.42;
    const QRectF left(r.left(), r.top(), r.width() - right, r.height());
    drawCity(painter, v, QRectF(left.left(), left.top(), left.width(), line), line * 0.85);
    drawHero(painter, v,
             QRectF(left.left(), left.top() + line, left.width(), r.height() - 2 * line));
    drawCondition(painter, v, QRectF(left.left(), r.bottom() - line, left.width(), line),
                  line * 0.8);
    const QRectF side(r.right() - right, r.top(), right, r.height());
    const qreal symbolSide = std::min(r.height() - 3 * line, right * 0.6);
    symbolAt(painter, v, nowSymbol(v),
             QRectF(side.right() - symbolSide, side.top(), symbolSide, symbolSide));
    QStringList lines{hiLo(v.reading), feels(v.reading)};
    if (withSun) {
        lines << sunTimes(v);
    }
    const qreal below = side.bottom() - line * static_cast<qreal>(lines.size());
    for (qsizetype i = 0; i < lines.size(); ++i) {
        drawLine(painter, v,
                 QRectF(side.left(), below + line * static_cast<qreal>(i), side.width(), line),
                 lines.at(i), line * 0.78, i == 0 ? v.ink.primary : v.ink.secondary,
                 Qt::AlignRight);
    }
}

void paintLarge(QPainter& painter, const QRectF& r, const View& v) {
    const qreal header = r.height() * 0.37;
    paintHeader(painter, QRectF(r.left(), r.top(), r.width(), header), v, false);
    const qreal curve = r.height() * 0.33;
    drawHourCurve(painter, v, QRectF(r.left(), r.top() + header, r.width(), curve));
    const QRectF days(r.left(), r.top() + header + curve + 2, r.width(),
                      r.height() - header - curve - 2);
    drawDayRows(painter, v, days, std::max(1, static_cast<int>(days.height() / 18)));
}

void paintWideTall(QPainter& painter, const QRectF& r, const View& v) {
    const qreal leftWidth = r.width() * 0.38;
    const QRectF left(r.left(), r.top(), leftWidth, r.height());
    const qreal line = 14;
    drawCity(painter, v, QRectF(left.left(), left.top(), left.width(), line), 12);
    const qreal hero = r.height() * 0.34;
    drawHero(painter, v, QRectF(left.left(), left.top() + line, left.width(), hero));
    qreal y = left.top() + line + hero + 2;
    const qreal side = 22;
    symbolAt(painter, v, nowSymbol(v), QRectF(left.left(), y, side, side));
    drawCondition(painter, v, QRectF(left.left() + side + 4, y, left.width() - side - 4, side), 12);
    y += side + 4;
    const QString sunrise = QStringLiteral("\u2191 ") + clock(v.reading.sunrise, v.h24);
    const QString sunset = QStringLiteral("\u2193 ") + clock(v.reading.sunset, v.h24);
    for (const QString& detail : {hiLo(v.reading), feels(v.reading), sunrise, sunset}) {
        drawLine(painter, v, QRectF(left.left(), y, left.width(), line), detail, 11,
                 v.ink.secondary);
        y += line + 1;
    }
    const QRectF right(left.right() + 10, r.top(), r.width() - leftWidth - 10, r.height());
    const qreal curve = right.height() * 0.42;
    drawHourCurve(painter, v, QRectF(right.left(), right.top(), right.width(), curve));
    const QRectF days(right.left(), right.top() + curve + 4, right.width(),
                      right.height() - curve - 4);
    drawDayRows(painter, v, days, std::max(1, static_cast<int>(days.height() / 18)));
}

void paintGrand(QPainter& painter, const QRectF& r, const View& v) {
    const qreal header = r.height() * 0.3;
    paintHeader(painter, QRectF(r.left(), r.top(), r.width(), header), v, true);
    const qreal curve = r.height() * 0.3;
    drawHourCurve(painter, v, QRectF(r.left(), r.top() + header + 2, r.width(), curve));
    qreal bottom = r.bottom();
    if (v.approximate) {
        const qreal help = 12;
        drawLine(painter, v, QRectF(r.left(), r.bottom() - help, r.width(), help),
                 L("weather.approx.help",
                   QStringLiteral("Approximate place, taken from your internet connection. Choose "
                                  "a city in the settings for exact weather.")),
                 9.5, v.ink.secondary);
        bottom -= help + 2;
    }
    const QRectF days(r.left(), r.top() + header + curve + 6, r.width(),
                      bottom - (r.top() + header + curve + 6));
    drawDayRows(painter, v, days, std::max(1, static_cast<int>(days.height() / 16)));
}

// Tiles of one size and the same settings show the same figures: they share one picture.
QString figuresSlot(const FaceContext& context) {
    QString slot = QStringLiteral("wx.figures/") + rawValue(context.size);
    for (auto it = context.settings.cbegin(); it != context.settings.cend(); ++it) {
        slot += QLatin1Char('\x1f') + it.key() + QLatin1Char('=') + it.value();
    }
    return slot;
}

// Everything the figures are drawn from.
QString figuresKey(const View& v, const FaceContext& context) {
    const WxReading& r = v.reading;
    QStringList parts{v.city,
                      QString::number(r.temp),
                      QString::number(r.feels),
                      QString::number(r.hi),
                      QString::number(r.lo),
                      rawValue(v.condition) + rawValue(v.frame.scene),
                      clock(r.sunrise, v.h24),
                      clock(r.sunset, v.h24),
                      QString::number(v.ink.primary.rgba(), 16),
                      QString::number(v.ink.accent.rgba(), 16),
                      QString::number(static_cast<int>(context.glass.shade)),
                      QString::number(static_cast<int>(v.night)) +
                          QString::number(static_cast<int>(v.approximate)) +
                          QString::number(static_cast<int>(v.shown.stale))};
    for (const WxHourEntry& hour : r.hourly) {
        parts << hour.hour + QLatin1Char(',') + hour.symbol + QLatin1Char(',') +
                     QString::number(hour.temp);
    }
    for (const WxDayEntry& day : r.daily) {
        parts << day.day + QLatin1Char(',') + day.symbol + QLatin1Char(',') +
                     QString::number(day.lo) + QLatin1Char(',') + QString::number(day.hi);
    }
    return parts.join(QLatin1Char('\x1f'));
}

} // namespace

std::optional<TimeGrain> WeatherFace::grain(WidgetSize, const WidgetSettings&) const {
    // Day turns to night, and "Now" moves along the hours.
    return TimeGrain::Minutes;
}

bool WeatherFace::showsWeather(const WidgetSettings& settings) const {
    return mode(settings) == WxMode::automatic;
}

double WeatherFace::sceneFps(const FaceContext& context) const {
    if (isOff(context.settings.value(QStringLiteral("animate")))) {
        return 0;
    }
    const Shown what = shown(context);
    if (what.kind != Shown::Kind::forecast || !what.live) {
        return 0;
    }
    const auto level = WeatherScene::levelOf(context.settings.value(QStringLiteral("sceneLevel")));
    if (mode(context.settings) == WxMode::manual) {
        return WeatherScene::fps(sceneFor(manualCondition(context.settings), std::nullopt), level);
    }
    return WeatherScene::fps(sceneFor(what.live->condition, what.live->code), level);
}

bool WeatherFace::opensSettingsOnClick(const FaceContext& context) const {
    const Shown::Kind kind = shown(context).kind;
    return kind == Shown::Kind::denied || kind == Shown::Kind::noLocation;
}

WeatherFace::Shown WeatherFace::shown(const FaceContext& context) {
    if (mode(context.settings) == WxMode::manual) {
        // A host that gives no time gets a midsummer noon rather than a look at the clock.
        const QDateTime now =
            context.now.isValid() ? context.now : QDateTime(QDate(2026, 6, 21), QTime(12, 0));
        WxLive live = mockLive(sceneFor(manualCondition(context.settings), std::nullopt), now);
        if (const auto fixed = FixedLocation::fromSettings(context.settings)) {
            live.city = fixed->name;
        }
        return {Shown::Kind::forecast, live, false};
    }
    const WeatherPlace* place =
        context.weather != nullptr ? context.weather->place(context.settings) : nullptr;
    if (const WxLive* live = WeatherNotice::forecast(place)) {
        return {Shown::Kind::forecast, *live, place->state.kind == WeatherState::Kind::error};
    }
    switch (place == nullptr ? WeatherState::Kind::loading : place->state.kind) {
    case WeatherState::Kind::error:
    case WeatherState::Kind::ready:
        return {Shown::Kind::failed, std::nullopt, false};
    case WeatherState::Kind::permissionDenied:
        return {Shown::Kind::denied, std::nullopt, false};
    case WeatherState::Kind::noLocation:
        return {Shown::Kind::noLocation, std::nullopt, false};
    case WeatherState::Kind::idle:
    case WeatherState::Kind::loading:
        break;
    }
    return {};
}

WxMode WeatherFace::mode(const WidgetSettings& settings) {
    return settings.value(QStringLiteral("mode")) == QLatin1String("manual") ? WxMode::manual
                                                                             : WxMode::automatic;
}

bool WeatherFace::usesFahrenheit(const QString& units, const std::optional<QString>& country,
                                 const QString& language, WeatherUnits::SystemRegion region) {
    if (units == QLatin1String("c")) {
        return false;
    }
    if (units == QLatin1String("f")) {
        return true;
    }
    return WeatherUnits::prefersFahrenheit(country, language, region);
}

int WeatherFace::labelStride(qsizetype hours, qreal width) {
    // A label such as "Now" or "14" wants this much room to breathe.
    constexpr qreal labelWidth = 32;
    if (hours <= 1 || width <= 0) {
        return 1;
    }
    const qreal perHour = width / static_cast<qreal>(hours - 1);
    return std::max(1, static_cast<int>(std::ceil(labelWidth / perHour)));
}

QList<qsizetype> WeatherFace::extremes(const QList<WxHourEntry>& hours) {
    if (hours.isEmpty()) {
        return {};
    }
    const auto less = [](const WxHourEntry& a, const WxHourEntry& b) { return a.temp < b.temp; };
    const auto [lo, hi] = std::minmax_element(hours.cbegin(), hours.cend(), less);
    const int highest = hi->temp;
    if (lo->temp == highest) {
        return {};
    }
    // minmax_element gives the last of equal maxima; the first reads better.
    const auto firstHi =
        std::find_if(hours.cbegin(), hours.cend(),
                     [highest](const WxHourEntry& h) { return h.temp == highest; });
    return {firstHi - hours.cbegin(), lo - hours.cbegin()};
}

void WeatherFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Shown what = shown(context);
    if (what.kind != Shown::Kind::forecast || !what.live) {
        const WeatherNotice notice = WeatherNotice::of(
            context.weather != nullptr ? context.weather->place(context.settings) : nullptr);
        ReadingKit::drawNotice(painter, context, rect, notice.symbol, notice.title, notice.detail);
        return;
    }
    const WxMode wxMode = mode(context.settings);
    const WxLive& live = *what.live;
    WxReading r = reading(live);
    const WxCondition condition =
        wxMode == WxMode::manual ? manualCondition(context.settings) : live.condition;
    if (wxMode == WxMode::manual) {
        r = reskin(r, condition);
    }
    const bool night = isNight(r, context.now, wxMode);
    const bool fahrenheit =
        usesFahrenheit(context.setting(QStringLiteral("units"), QStringLiteral("auto")),
                       live.countryCode, QLocale().name().section(QLatin1Char('_'), 0, 0),
                       QLocale::system().territory() == QLocale::UnitedStates
                           ? WeatherUnits::SystemRegion::us
                           : WeatherUnits::SystemRegion::elsewhere);
    if (fahrenheit) {
        r = inFahrenheit(r);
    }
    WeatherScene::Frame frame{
        .scene = wxMode == WxMode::manual ? sceneFor(condition, std::nullopt)
                                          : sceneFor(condition, live.code),
        .night = night,
        .time = context.sceneTime,
        .level = WeatherScene::levelOf(context.setting(QStringLiteral("sceneLevel"))),
    };
    const View v{
        .context = context,
        .shown = what,
        .reading = r,
        .condition = condition,
        .night = night,
        .city = live.city.isEmpty() ? kDash : live.city,
        .approximate = live.approximate && wxMode == WxMode::automatic,
        .frame = frame,
        .ink = Ink::of(context, WeatherScene::wantsLightText(frame)),
        .h24 = FaceKit::uses24Hour(context),
    };
    painter.save();
    if (frame.level == WeatherScene::Level::subtle &&
        context.glass.shade == GlassLook::Shade::Light) {
        // Light glass carries dark figures: the tint stays light enough for them.
        painter.setOpacity(0.65);
    }
    WeatherScene::paint(painter, rect, frame, context.pictures, context.devicePixelRatio);
    painter.restore();
    // The figures keep a little off the card's edges.
    const QRectF inner = rect.adjusted(4, 3, -4, -3);
    const auto figures = [&](QPainter& p) {
        switch (context.size) {
        case WidgetSize::small:
            paintSmall(p, inner, v);
            break;
        case WidgetSize::wide:
            paintWide(p, inner, v);
            break;
        case WidgetSize::large:
            paintLarge(p, inner, v);
            break;
        case WidgetSize::wideTall:
            paintWideTall(p, inner, v);
            break;
        case WidgetSize::grand:
            paintGrand(p, inner, v);
            break;
        default:
            // Sizes the catalogue does not offer draw as the nearest it does.
            if (inner.width() > inner.height() * 1.6) {
                paintWide(p, inner, v);
            } else if (inner.height() > 150) {
                paintLarge(p, inner, v);
            } else {
                paintSmall(p, inner, v);
            }
            break;
        }
    };
    if (context.pictures == nullptr) {
        painter.save();
        figures(painter);
        painter.restore();
        return;
    }
    // The figures stand still while the sky moves: one picture, drawn again only when they change.
    context.pictures->drawLatest(painter, rect, figuresSlot(context), figuresKey(v, context),
                                 context.devicePixelRatio, [&](QPainter& p) {
                                     p.translate(-rect.topLeft());
                                     figures(p);
                                 });
}

} // namespace tw
