// The moon's phase, light, place in the sky, rise and set, from the date and the place alone; the
// short series a tile needs, and the sun's coordinates they rest on.
#pragma once

#include "weather/HorizonWalk.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QTimeZone>

namespace tw {

// Right ascension and declination, radians.
struct SkyCoordinates {
    double rightAscension = 0;
    double declination = 0;
};

class MoonMath {
public:
    MoonMath() = delete;

    // The principal phases; each one's target phase position is its value × 0.25.
    enum class Phase { newMoon, firstQuarter, full, lastQuarter };

    using Times = HorizonTimes;

    struct Illumination {
        // 0 new, 0.5 full, just below 1 the moment before the next new moon.
        double phase = 0;
        // The lit part of the disc, 0 to 1.
        double fraction = 0;
        // The angle of the bright limb, radians.
        double angle = 0;
    };

    // Altitude (refracted) and azimuth in radians, distance in kilometres.
    struct Position {
        double altitude = 0;
        double azimuth = 0;
        double distance = 0;
    };

    struct MoonCoordinates {
        SkyCoordinates sky;
        double distance = 0;
    };

    static constexpr double rad = 0.017453292519943295;
    // The moon's altitude at rise and set: its radius and parallax against the refraction.
    static constexpr double moonHorizon = 0.0023212879051524586;

    // Days since J2000 as a real number.
    static double dayNumber(qint64 msecsSinceEpoch);
    static double dayNumber(const QDateTime& at);
    // The sun's ecliptic longitude, radians.
    static double sunLongitude(double d);
    static SkyCoordinates sunCoords(double d);
    // A point on the ecliptic (longitude in radians) in right ascension and declination.
    static SkyCoordinates onEcliptic(double longitude);
    static double moonLongitude(double d);
    static MoonCoordinates moonCoords(double d);
    // The local sidereal time, radians; longitude in degrees, east positive.
    static double siderealTime(double d, double longitude);
    // The altitude, without refraction, of a body at `sky` seen from the place (degrees).
    static double altitude(const SkyCoordinates& sky, double d, double latitude, double longitude);
    // The same for a local sidereal time of the caller's choosing (radians).
    static double altitudeAt(const SkyCoordinates& sky, double siderealTime, double latitude);

    static Illumination illumination(const QDateTime& at);
    static Position position(const QDateTime& at, double latitude, double longitude);
    // Rise and set within `day` as `zone` counts it.
    static Times times(QDate day, double latitude, double longitude, const QTimeZone& zone);
    // The first moment after `after` at which the moon reaches `phase`.
    static QDateTime next(Phase phase, const QDateTime& after);
    static QString nameForPhase(double phase);
};

} // namespace tw
