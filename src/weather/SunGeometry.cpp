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
    return walkHorizon(day.startOfDay(zone), sunHorizon, [latitude, longitude](qint64 msecs) {
        const double d = MoonMath::dayNumber(msecs);
        return MoonMath::altitude(MoonMath::sunCoords(d), d, latitude, longitude);
    });
}

} // namespace tw
