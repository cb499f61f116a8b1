#include "weather/SkyReport.h"

#include "weather/MoonMath.h"
#include "weather/SunGeometry.h"

#include <QTimeZone>

#include <cmath>
#include <numbers>
#include <optional>

namespace tw {

namespace {

std::optional<double> degreesWithin(const QString& text, double limit) {
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !std::isfinite(value) || std::abs(value) > limit) {
        return std::nullopt;
    }
    return value;
}

QString timeOrNone(const std::optional<QDateTime>& at, const QTimeZone& zone) {
    return at ? at->toTimeZone(zone).toString(Qt::ISODate) : QStringLiteral("none");
}

QString quoted(const QString& text) {
    return QLatin1Char('"') + text + QLatin1Char('"');
}

} // namespace

std::variant<SkyReport::Query, QString>
SkyReport::read(const QString& latitude, const QString& longitude, const QString& time) {
    const std::optional<double> lat = degreesWithin(latitude, 90);
    if (!lat) {
        return QStringLiteral("the latitude must be a number of degrees from -90 to 90, not ") +
               quoted(latitude);
    }
    const std::optional<double> lon = degreesWithin(longitude, 180);
    if (!lon) {
        return QStringLiteral("the longitude must be a number of degrees from -180 to 180, not ") +
               quoted(longitude);
    }
    // Without its offset a moment says neither which day nor which clock the times are for.
    const QDateTime at = QDateTime::fromString(time, Qt::ISODateWithMs);
    if (!at.isValid() || at.timeSpec() == Qt::LocalTime ||
        !QTimeZone(at.offsetFromUtc()).isValid()) {
        return QStringLiteral("the time must be ISO 8601 with its offset, as "
                              "2026-03-20T18:30:00+01:00, not ") +
               quoted(time);
    }
    return Query{*lat, *lon, at};
}

QString SkyReport::lines(const Query& query) {
    constexpr double degree = std::numbers::pi / 180;
    const QTimeZone zone(query.at.offsetFromUtc());
    const QDate day = query.at.toTimeZone(zone).date();
    const MoonMath::Illumination light = MoonMath::illumination(query.at);
    const HorizonTimes sun = SunGeometry::times(day, query.latitude, query.longitude, zone);
    const MoonMath::Times moon = MoonMath::times(day, query.latitude, query.longitude, zone);
    const SunGeometry::Subsolar subsolar = SunGeometry::subsolar(query.at);
    return QStringLiteral("phase=%1\nillumination=%2\nsunrise=%3\nsunset=%4\nmoonrise=%5\n"
                          "moonset=%6\nsubsolar_lat=%7\nsubsolar_lon=%8\n")
        .arg(QString::number(light.phase, 'f', 4), QString::number(light.fraction * 100, 'f', 1),
             timeOrNone(sun.rise, zone), timeOrNone(sun.set, zone), timeOrNone(moon.rise, zone),
             timeOrNone(moon.set, zone), QString::number(subsolar.lat / degree, 'f', 2),
             QString::number(subsolar.lon / degree, 'f', 2));
}

} // namespace tw
