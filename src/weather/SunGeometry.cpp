#include "weather/SunGeometry.h"

#include "weather/MoonMath.h"

#include <cmath>
#include <numbers>

namespace tw {

SunGeometry::Subsolar SunGeometry::subsolar(const QDateTime& at) {
    using std::numbers::pi;
    const QDateTime utc = at.toUTC();
    const int ordinal = utc.date().dayOfYear();
    const double lat = ordinal > 0 ? std::sin((ordinal + 284) * 2 * pi / 365) * 23.44 * pi / 180
                                   : -0.40145755688539897;
    const QTime time = utc.time();
    const double hours =
        time.isValid() ? time.hour() + time.minute() / 60.0 + time.second() / 3600.0 : 0;
    return {lat, (hours - 12) * -15 * pi / 180};
}

HorizonTimes SunGeometry::times(QDate day, double latitude, double longitude,
                                const QTimeZone& zone) {
    // The moon's series keep the sun in the frame of the year 2000, which by now puts its rise
    // and set more than a minute off; rise and set take the sun and the sidereal time of the date.
    constexpr double precessionPerDay = 1.396971 / 36525 * MoonMath::rad;
    return walkHorizon(day.startOfDay(zone), sunHorizon, [latitude, longitude](qint64 msecs) {
        const double d = MoonMath::dayNumber(msecs);
        const SkyCoordinates sun =
            MoonMath::onEcliptic(MoonMath::sunLongitude(d) + precessionPerDay * d);
        const double sidereal = (280.46061837 + 360.98564736629 * d + longitude) * MoonMath::rad;
        return MoonMath::altitudeAt(sun, sidereal, latitude);
    });
}

} // namespace tw
