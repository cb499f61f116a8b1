#include "faces/WorldMapFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"
#include "text/L.h"
#include "weather/SunGeometry.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QTimeZone>

#include <array>
#include <cmath>
#include <numbers>

namespace tw {

namespace {

constexpr double rad = std::numbers::pi / 180;

// The latitudes the map shows: Antarctica's coast and the high Arctic are left out.
constexpr double northEdge = 84;
constexpr double southEdge = -58;
constexpr double naturalAspect = 360 / (northEdge - southEdge);
// Taller tiles stretch the map up to this aspect rather than leave it a thin strip.
constexpr double tallestAspect = 2.0;
// The least height under the map worth a line of words.
constexpr qreal minCaption = 18;

struct City {
    const char* name;
    double latitude;
    double longitude;
    const char* zone; // for the first eight, which the large tiles list; null for the others
};

// Lights at night and candidates for where the sun rises and sets.
constexpr std::array kCities{
    City{"New York", 40.71, -74.01, "America/New_York"},
    City{"London", 51.51, -0.13, "Europe/London"},
    City{"Dubai", 25.20, 55.27, "Asia/Dubai"},
    City{"Tokyo", 35.68, 139.69, "Asia/Tokyo"},
    City{"Sydney", -33.87, 151.21, "Australia/Sydney"},
    City{"Los Angeles", 34.05, -118.24, "America/Los_Angeles"},
    City{"São Paulo", -23.55, -46.63, "America/Sao_Paulo"},
    City{"Mexico City", 19.43, -99.13, "America/Mexico_City"},
    City{"Chicago", 41.88, -87.63, nullptr},
    City{"Toronto", 43.65, -79.38, nullptr},
    City{"Houston", 29.76, -95.37, nullptr},
    City{"Vancouver", 49.28, -123.12, nullptr},
    City{"Honolulu", 21.31, -157.86, nullptr},
    City{"Anchorage", 61.22, -149.90, nullptr},
    City{"Bogotá", 4.71, -74.07, nullptr},
    City{"Lima", -12.05, -77.04, nullptr},
    City{"Santiago", -33.45, -70.67, nullptr},
    City{"Buenos Aires", -34.60, -58.38, nullptr},
    City{"Rio de Janeiro", -22.91, -43.17, nullptr},
    City{"Caracas", 10.48, -66.90, nullptr},
    City{"Havana", 23.11, -82.37, nullptr},
    City{"Reykjavík", 64.15, -21.94, nullptr},
    City{"Lisbon", 38.72, -9.14, nullptr},
    City{"Madrid", 40.42, -3.70, nullptr},
    City{"Paris", 48.86, 2.35, nullptr},
    City{"Berlin", 52.52, 13.40, nullptr},
    City{"Rome", 41.90, 12.50, nullptr},
    City{"Stockholm", 59.33, 18.07, nullptr},
    City{"Warsaw", 52.23, 21.01, nullptr},
    City{"Athens", 37.98, 23.73, nullptr},
    City{"Istanbul", 41.01, 28.98, nullptr},
    City{"Moscow", 55.76, 37.62, nullptr},
    City{"Cairo", 30.04, 31.24, nullptr},
    City{"Lagos", 6.52, 3.38, nullptr},
    City{"Kinshasa", -4.44, 15.27, nullptr},
    City{"Nairobi", -1.29, 36.82, nullptr},
    City{"Addis Ababa", 9.03, 38.74, nullptr},
    City{"Johannesburg", -26.20, 28.05, nullptr},
    City{"Cape Town", -33.92, 18.42, nullptr},
    City{"Casablanca", 33.57, -7.59, nullptr},
    City{"Dakar", 14.72, -17.47, nullptr},
    City{"Riyadh", 24.71, 46.68, nullptr},
    City{"Tehran", 35.69, 51.39, nullptr},
    City{"Karachi", 24.86, 67.01, nullptr},
    City{"Delhi", 28.70, 77.10, nullptr},
    City{"Mumbai", 19.08, 72.88, nullptr},
    City{"Bengaluru", 12.97, 77.59, nullptr},
    City{"Kolkata", 22.57, 88.36, nullptr},
    City{"Dhaka", 23.81, 90.41, nullptr},
    City{"Bangkok", 13.76, 100.50, nullptr},
    City{"Singapore", 1.35, 103.82, nullptr},
    City{"Jakarta", -6.21, 106.85, nullptr},
    City{"Manila", 14.60, 120.98, nullptr},
    City{"Hong Kong", 22.32, 114.17, nullptr},
    City{"Shanghai", 31.23, 121.47, nullptr},
    City{"Beijing", 39.90, 116.41, nullptr},
    City{"Seoul", 37.57, 126.98, nullptr},
    City{"Novosibirsk", 55.01, 82.93, nullptr},
    City{"Almaty", 43.24, 76.89, nullptr},
    City{"Perth", -31.95, 115.86, nullptr},
    City{"Melbourne", -37.81, 144.96, nullptr},
    City{"Auckland", -36.85, 174.76, nullptr},
};

// The sun's altitude in degrees over a place.
double altitude(WorldMapFace::SunPoint sun, double latitude, double longitude) {
    return std::asin(std::sin(latitude * rad) * std::sin(sun.latitude * rad) +
                     std::cos(latitude * rad) * std::cos(sun.latitude * rad) *
                         std::cos((longitude - sun.longitude) * rad)) /
           rad;
}

// Degrees west (negative) or east of the sun's meridian, −180...180.
double fromNoon(WorldMapFace::SunPoint sun, double longitude) {
    return std::remainder(longitude - sun.longitude, 360.0);
}

// The city whose sun is nearest the horizon on the morning side (rising) or the evening side.
const City& atHorizon(WorldMapFace::SunPoint sun, bool rising) {
    const City* best = &kCities.front();
    double closest = 360;
    for (const City& city : kCities) {
        const bool morning = fromNoon(sun, city.longitude) < 0;
        const double off = std::abs(altitude(sun, city.latitude, city.longitude));
        if (morning == rising && off < closest) {
            closest = off;
            best = &city;
        }
    }
    return *best;
}

struct Frame {
    QRectF map;

    QPointF at(double longitude, double latitude) const {
        return {map.left() + (longitude + 180) / 360 * map.width(),
                map.top() + (northEdge - latitude) / (northEdge - southEdge) * map.height()};
    }
};

// The dots of land, and fainter ones of sea, on a grid whose pitch suits the map's size.
void drawDots(QPainter& painter, const QSizeF& size, const LandMask& land,
              const FaceContext& context) {
    const int cols = std::clamp(static_cast<int>(size.width() / 3.3), 40, 150);
    const qreal pitch = size.width() / cols;
    const int rowsCount = std::max(1, static_cast<int>(size.height() / pitch));
    const qreal rowPitch = size.height() / rowsCount;
    const double lonStep = 360.0 / cols;
    const double latStep = (northEdge - southEdge) / rowsCount;
    QColor landColour = context.primary();
    landColour.setAlphaF(context.glass.darkInk() ? 0.5F : 0.62F);
    QColor seaColour = context.primary();
    seaColour.setAlphaF(0.07F);
    const qreal radius = std::min(pitch, rowPitch) * 0.33;
    painter.setPen(Qt::NoPen);
    // A tint of sea under the dots, which the night then darkens.
    painter.fillRect(QRectF(QPointF(0, 0), size),
                     context.glass.darkInk() ? QColor(120, 160, 215, 64) : QColor(56, 96, 160, 84));
    for (int r = 0; r < rowsCount; ++r) {
        const double north = northEdge - r * latStep;
        for (int c = 0; c < cols; ++c) {
            const double west = -180 + c * lonStep;
            const bool isLand = land.share(west, west + lonStep, north - latStep, north) >= 0.35;
            painter.setBrush(isLand ? landColour : seaColour);
            painter.drawEllipse(QPointF((c + 0.5) * pitch, (r + 0.5) * rowPitch),
                                isLand ? radius : radius * 0.6, isLand ? radius : radius * 0.6);
        }
    }
}

QPainterPath nightPath(const Frame& frame, WorldMapFace::SunPoint sun, double depth) {
    const QPolygonF outline = WorldMapFace::nightOutline(sun, depth);
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (const double shift : {-360.0, 0.0, 360.0}) {
        QPolygonF shifted;
        shifted.reserve(outline.size());
        for (const QPointF& p : outline) {
            shifted << frame.at(p.x() + shift, p.y());
        }
        path.addPolygon(shifted);
        path.closeSubpath();
    }
    return path;
}

void drawNight(QPainter& painter, const Frame& frame, WorldMapFace::SunPoint sun,
               const FaceContext& context) {
    // Layers for the sun ever deeper under the horizon, down through the twilights: the shade
    // deepens towards the heart of the night instead of ending at a hard line.
    const QColor shade = context.glass.darkInk() ? QColor(18, 24, 56, 22) : QColor(0, 0, 8, 26);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shade);
    for (double depth = 0; depth >= -18; depth -= 2) {
        painter.drawPath(nightPath(frame, sun, depth));
    }
}

// Cities come alight through dusk: none while the sun is above 2° under their horizon, all by
// 8° under it.
void drawCityLights(QPainter& painter, const Frame& frame, WorldMapFace::SunPoint sun) {
    const qreal r = std::clamp(frame.map.width() / 260, 0.9, 2.0);
    painter.save();
    painter.setPen(Qt::NoPen);
    for (const City& city : kCities) {
        const double dusk = (-2 - altitude(sun, city.latitude, city.longitude)) / 6;
        if (dusk <= 0) {
            continue;
        }
        painter.setOpacity(std::min(dusk, 1.0));
        const QPointF at = frame.at(city.longitude, city.latitude);
        QRadialGradient glow(at, r * 3.2);
        glow.setColorAt(0, QColor(255, 214, 130, 200));
        glow.setColorAt(0.35, QColor(255, 190, 90, 90));
        glow.setColorAt(1, QColor(255, 170, 60, 0));
        painter.setBrush(glow);
        painter.drawEllipse(at, r * 3.2, r * 3.2);
        painter.setBrush(QColor(255, 236, 190));
        painter.drawEllipse(at, r * 0.55, r * 0.55);
    }
    painter.restore();
}

void drawSun(QPainter& painter, const Frame& frame, WorldMapFace::SunPoint sun) {
    const QPointF at = frame.at(sun.longitude, sun.latitude);
    const qreal r = std::clamp(frame.map.height() / 16, 3.5, 9.0);
    QRadialGradient halo(at, r * 3);
    halo.setColorAt(0, QColor(255, 214, 90, 150));
    halo.setColorAt(0.4, QColor(255, 196, 60, 60));
    halo.setColorAt(1, QColor(255, 180, 40, 0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(halo);
    painter.drawEllipse(at, r * 3, r * 3);
    painter.setBrush(QColor(255, 206, 72));
    painter.setPen(QPen(QColor(255, 246, 214), std::max<qreal>(1, r * 0.22)));
    painter.drawEllipse(at, r, r);
}

QString degrees(double value, char positive, char negative) {
    return QStringLiteral("%1\u00b0%2")
        .arg(std::abs(value), 0, 'f', 0)
        .arg(QLatin1Char(value >= 0 ? positive : negative));
}

QString coordinates(WorldMapFace::SunPoint sun) {
    return degrees(sun.latitude, 'N', 'S') + QLatin1Char(' ') + degrees(sun.longitude, 'E', 'W');
}

// A small sun by day and a crescent by night.
void drawDayMark(QPainter& painter, const QPointF& centre, qreal r, bool day) {
    painter.save();
    painter.setPen(Qt::NoPen);
    if (day) {
        painter.setBrush(QColor(255, 200, 64));
        painter.drawEllipse(centre, r, r);
    } else {
        QPainterPath moon;
        moon.addEllipse(centre, r, r);
        QPainterPath bite;
        bite.addEllipse(centre + QPointF(r * 0.55, -r * 0.35), r * 0.85, r * 0.85);
        painter.setBrush(QColor(180, 196, 255));
        painter.drawPath(moon.subtracted(bite));
    }
    painter.restore();
}

// "14:05 UTC", or "2:05 PM UTC".
QString utcTime(const FaceContext& context, const QDateTime& now) {
    const QTime utc = now.toUTC().time();
    const bool h24 = FaceKit::uses24Hour(context);
    return FaceKit::hoursMinutes(utc, h24) +
           (h24 ? QString() : QLatin1Char(' ') + FaceKit::dayHalf(utc)) + QStringLiteral(" UTC");
}

// The sun's point and the time at the left and right of one line.
void drawSunLine(QPainter& painter, const FaceContext& context, const QRectF& line,
                 WorldMapFace::SunPoint sun, const QDateTime& now) {
    const QRectF used = FaceKit::drawFitted(painter, context, line, utcTime(context, now),
                                            QFont::Medium, context.primary(),
                                            Qt::AlignRight | Qt::AlignVCenter, line.height() * 0.8);
    // Where the words would be small the sun's point goes without them.
    const QString where =
        line.width() < 240
            ? coordinates(sun)
            : L("worldmap.sunOver", QStringLiteral("Sun overhead at %1")).arg(coordinates(sun));
    FaceKit::drawFitted(
        painter, context,
        QRectF(line.left(), line.top(), used.left() - line.left() - 8, line.height()), where,
        QFont::Normal, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, line.height() * 0.7);
}

// An arrow and the city where the sun is now rising or setting.
QString horizonText(WorldMapFace::SunPoint sun, bool rising) {
    const QString word = rising ? L("worldmap.sunrise", QStringLiteral("Sunrise"))
                                : L("worldmap.sunset", QStringLiteral("Sunset"));
    return word + QStringLiteral("  ") + QString::fromUtf8(atHorizon(sun, rising).name);
}

// Where the sun rises and where it sets now, in two boxes, the words of both at one size.
void drawHorizons(QPainter& painter, const FaceContext& context, const QRectF& rising,
                  const QRectF& setting, WorldMapFace::SunPoint sun) {
    const qreal side = rising.height() * 0.78;
    qreal size = rising.height() * 0.7;
    for (const bool up : {true, false}) {
        const QRectF box = (up ? rising : setting).adjusted(side * 1.2, 0, 0, 0);
        size = std::min(
            size, FaceKit::fittingPixelSize(horizonText(sun, up), box.size(), QFont::Normal, size));
    }
    for (const bool up : {true, false}) {
        const QRectF& box = up ? rising : setting;
        FaceKit::drawSymbol(painter, context,
                            up ? QStringLiteral("arrow.up") : QStringLiteral("arrow.down"),
                            QRectF(box.left(), box.center().y() - side / 2, side, side),
                            context.accent(), QStringLiteral("+"));
        FaceKit::drawText(painter, context, box.adjusted(side * 1.2, 0, 0, 0),
                          static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter), horizonText(sun, up),
                          FaceKit::font(size), context.primary());
    }
}

// The first cities of the list, their time and whether the sun is up there, in a grid.
void drawCities(QPainter& painter, const FaceContext& context, const QRectF& grid,
                WorldMapFace::SunPoint sun, const QDateTime& now) {
    const int cols = grid.width() > 300 ? 4 : 3;
    const int rowsCount = grid.height() >= 84 && cols == 3 ? 2 : 1;
    const qreal cw = grid.width() / cols;
    const qreal ch = grid.height() / rowsCount;
    const qreal label = std::min(ch * 0.34, 15.0);
    const qreal mark = label * 0.9;
    qreal nameSize = label;
    for (int i = 0; i < cols * rowsCount; ++i) {
        nameSize =
            std::min(nameSize, FaceKit::fittingPixelSize(QString::fromUtf8(kCities.at(i).name),
                                                         QSizeF(cw - mark * 1.4 - 4, label),
                                                         QFont::DemiBold, label));
    }
    const bool h24 = FaceKit::uses24Hour(context);
    for (int i = 0; i < cols * rowsCount; ++i) {
        const City& city = kCities.at(static_cast<std::size_t>(i));
        const QRectF cell(grid.left() + (i % cols) * cw, grid.top() + (i / cols) * ch, cw, ch);
        const bool day = altitude(sun, city.latitude, city.longitude) > -0.83;
        drawDayMark(painter, QPointF(cell.left() + mark / 2, cell.top() + label / 2), mark * 0.42,
                    day);
        FaceKit::drawText(painter, context,
                          QRectF(cell.left() + mark * 1.4, cell.top(), cw - mark * 1.4 - 4, label),
                          static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter),
                          QString::fromUtf8(city.name), FaceKit::font(nameSize, QFont::DemiBold),
                          context.secondary());
        const QDateTime local = now.toTimeZone(QTimeZone(city.zone));
        const QRectF timeBox(cell.left(), cell.top() + label, cw - 6, ch - label - 2);
        const qreal half = h24 ? 0 : timeBox.width() * 0.3;
        const QRectF used = FaceKit::drawFitted(
            painter, context, timeBox.adjusted(0, 0, -half, 0),
            FaceKit::hoursMinutes(local.time(), h24), QFont::Light, context.primary(),
            Qt::AlignLeft | Qt::AlignVCenter, std::min(ch - label, label * 2.2));
        if (!h24) {
            FaceKit::drawFitted(painter, context,
                                QRectF(used.right() + 2, used.top(), half, used.height() * 0.8),
                                FaceKit::dayHalf(local.time()), QFont::Normal, context.secondary(),
                                Qt::AlignLeft | Qt::AlignBottom, label * 0.8);
        }
    }
}

// What the words beside or under the map hold, as room allows: the sun's point and the time,
// where the sun rises and sets now, and a few cities' time of day.
void drawCaption(QPainter& painter, const FaceContext& context, const QRectF& rect,
                 WorldMapFace::SunPoint sun, const QDateTime& now) {
    if (rect.height() < minCaption * 0.8 || rect.width() < 40) {
        return;
    }
    if (rect.width() < 170) {
        // A narrow column: one thing to a line.
        const qreal h = rect.height() / 4;
        FaceKit::drawFitted(painter, context,
                            QRectF(rect.left(), rect.top(), rect.width(), h * 1.3),
                            utcTime(context, now), QFont::Light, context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter, h * 1.1);
        FaceKit::drawFitted(painter, context,
                            QRectF(rect.left(), rect.top() + h * 1.3, rect.width(), h * 0.8),
                            coordinates(sun), QFont::Normal, context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter, h * 0.62);
        drawHorizons(painter, context,
                     QRectF(rect.left(), rect.top() + h * 2.15, rect.width(), h * 0.9),
                     QRectF(rect.left(), rect.top() + h * 3.1, rect.width(), h * 0.9), sun);
        return;
    }
    if (rect.height() < 30) {
        // One line: the sun's point and the time.
        const qreal line = std::min(rect.height() * 0.9, 18.0);
        drawSunLine(painter, context,
                    QRectF(rect.left(), rect.center().y() - line / 2, rect.width(), line), sun,
                    now);
        return;
    }
    const qreal line = std::min(rect.height() / 2.3, 18.0);
    const QRectF first(rect.left(), rect.top(), rect.width(), line);
    drawSunLine(painter, context, first, sun, now);
    const QRectF second(rect.left(), first.bottom() + line * 0.2, rect.width(), line);
    drawHorizons(painter, context,
                 QRectF(second.left(), second.top(), second.width() / 2 - 4, line),
                 QRectF(second.center().x() + 4, second.top(), second.width() / 2 - 4, line), sun);
    const QRectF grid(rect.left(), second.bottom() + line * 0.5, rect.width(),
                      rect.bottom() - second.bottom() - line * 0.5);
    if (grid.height() >= 28) {
        drawCities(painter, context, grid, sun, now);
    }
}

} // namespace

WorldMapFace::WorldMapFace()
    : m_land(LandMask::builtIn()) {}

std::optional<TimeGrain> WorldMapFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

QPolygonF WorldMapFace::nightOutline(SunPoint sun, double altitude) {
    // The night is a cap around the point opposite the sun, 90° plus `altitude` across. A sun
    // exactly on the equator puts both poles on the edge of the plain night; a hair off it
    // keeps the outline a curve around one pole.
    const double latitude =
        std::abs(sun.latitude) < 0.05 ? std::copysign(0.05, sun.latitude) : sun.latitude;
    const double cLat = -latitude * rad;
    const double cLon = sun.longitude + 180;
    const double r = (90 + altitude) * rad;
    constexpr int steps = 144;
    QPolygonF outline;
    outline.reserve(steps + 3);
    double previous = 0;
    for (int i = 0; i <= steps; ++i) {
        const double bearing = 2 * std::numbers::pi * i / steps;
        const double lat = std::asin(std::sin(cLat) * std::cos(r) +
                                     std::cos(cLat) * std::sin(r) * std::cos(bearing));
        double lon = cLon + std::atan2(std::sin(bearing) * std::sin(r) * std::cos(cLat),
                                       std::cos(r) - std::sin(cLat) * std::sin(lat)) /
                                rad;
        if (i > 0) {
            // Longitudes run on without the jump at ±180.
            lon = previous + std::remainder(lon - previous, 360.0);
        }
        previous = lon;
        outline << QPointF(lon, lat / rad);
    }
    const double turned = outline.last().x() - outline.first().x();
    if (std::abs(turned) > 180) {
        // The cap holds a pole: close the outline along it.
        const double pole = cLat > 0 ? 90 : -90;
        outline << QPointF(outline.last().x(), pole) << QPointF(outline.first().x(), pole);
    }
    return outline;
}

void WorldMapFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const bool banner = context.size == WidgetSize::banner;
    Frame frame;
    if (banner) {
        // The map at the left, the words beside it.
        const qreal width = std::min(rect.width() * 0.62, rect.height() * naturalAspect);
        frame.map = QRectF(rect.left(), rect.center().y() - width / naturalAspect / 2, width,
                           width / naturalAspect);
    } else {
        const qreal tall = rect.width() / tallestAspect;
        const qreal height = rect.height() - tall >= minCaption
                                 ? tall
                                 : std::min(rect.height(), rect.width() / naturalAspect);
        frame.map = QRectF(rect.left(), rect.top(), rect.width(), height);
        if (rect.height() - height < minCaption) {
            // No room for words: the map sits in the middle.
            frame.map.moveTop(rect.center().y() - height / 2);
        }
    }
    const SunGeometry::Subsolar under = SunGeometry::subsolar(context.now);
    const SunPoint sun{under.lat / rad, under.lon / rad};

    painter.save();
    QPainterPath clip;
    clip.addRoundedRect(frame.map, 8, 8);
    painter.setClipPath(clip, Qt::IntersectClip);
    // The dots take the ink of the glass and the theme.
    const QString key = QStringLiteral("worldmap|%1|%2")
                            .arg(context.glass.darkInk() ? 1 : 0)
                            .arg(context.primary().name(QColor::HexArgb));
    const auto dots = [&](QPainter& p) { drawDots(p, frame.map.size(), m_land, context); };
    if (context.pictures != nullptr) {
        context.pictures->draw(painter, frame.map, key, context.devicePixelRatio * context.scale,
                               dots);
    } else {
        painter.translate(frame.map.topLeft());
        dots(painter);
        painter.translate(-frame.map.topLeft());
    }
    painter.setRenderHint(QPainter::Antialiasing);
    drawNight(painter, frame, sun, context);
    drawCityLights(painter, frame, sun);
    drawSun(painter, frame, sun);
    painter.restore();

    if (banner) {
        drawCaption(painter, context,
                    QRectF(frame.map.right() + 10, rect.top(),
                           rect.right() - frame.map.right() - 10, rect.height()),
                    sun, context.now);
    } else {
        drawCaption(painter, context,
                    QRectF(rect.left(), frame.map.bottom() + 4, rect.width(),
                           rect.bottom() - frame.map.bottom() - 4),
                    sun, context.now);
    }
}

} // namespace tw
