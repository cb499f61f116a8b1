// Where on the Earth the sun stands overhead, and when it rises and sets at a place.
#pragma once

#include "weather/HorizonWalk.h"

#include <QDate>
#include <QDateTime>
#include <QTimeZone>

namespace tw {

class SunGeometry {
public:
    SunGeometry() = delete;

    // Radians; longitude east positive.
    struct Subsolar {
        double lat = 0;
        double lon = 0;
    };

    // The sun's altitude at rise and set: its radius and the refraction at the horizon, −0.833°.
    static constexpr double sunHorizon = -0.833 * 0.017453292519943295;

    // A calendar approximation: the declination from the day of the year (of 365 days, leap
    // years too) and the longitude from the time of day in UTC, the sun over 0° at 12:00.
    static Subsolar subsolar(const QDateTime& at);
    // Sunrise and sunset within `day` as `zone` counts it.
    static HorizonTimes times(QDate day, double latitude, double longitude, const QTimeZone& zone);
};

} // namespace tw
