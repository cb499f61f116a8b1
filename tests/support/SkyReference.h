// An independent reference for the sky's mathematics, to measure ours against: the sun by the
// low-accuracy method (Meeus, Astronomical Algorithms, ch. 25), the moon by the main periodic
// terms of ch. 47, nutation and sidereal time (ch. 22, 12), the moon's lit fraction (ch. 48), and
// rise and set as the crossings of the standard altitudes of ch. 15, found by bisection.
#pragma once

#include <QDateTime>
#include <QStringList>

#include <array>
#include <cmath>
#include <numbers>
#include <optional>

namespace tw::test::sky {

inline constexpr double degree = std::numbers::pi / 180;
// Terrestrial minus universal time around 2020–2030, seconds.
inline constexpr double deltaT = 69;

inline double sind(double x) {
    return std::sin(x * degree);
}
inline double cosd(double x) {
    return std::cos(x * degree);
}
inline double normalized(double degrees) {
    const double x = std::fmod(degrees, 360);
    return x < 0 ? x + 360 : x;
}
// Into −180 ... 180.
inline double signedDegrees(double degrees) {
    const double x = normalized(degrees);
    return x > 180 ? x - 360 : x;
}

struct Equatorial {
    double rightAscension; // degrees
    double declination;    // degrees
};

struct Instant {
    double jd;        // universal time
    double t;         // Julian centuries of terrestrial time since J2000
    double nutation;  // in longitude, degrees
    double obliquity; // true, degrees

    explicit Instant(qint64 msecsSinceEpoch)
        : jd(double(msecsSinceEpoch) / 86400000.0 + 2440587.5)
        , t((jd + deltaT / 86400 - 2451545) / 36525) {
        const double omega = 125.04452 - 1934.136261 * t;
        const double lSun = 280.4665 + 36000.7698 * t;
        const double lMoon = 218.3165 + 481267.8813 * t;
        nutation = (-17.20 * sind(omega) - 1.32 * sind(2 * lSun) - 0.23 * sind(2 * lMoon) +
                    0.21 * sind(2 * omega)) /
                   3600;
        const double meanObliquity = 23.4392911 - 0.0130042 * t;
        obliquity = meanObliquity + (9.20 * cosd(omega) + 0.57 * cosd(2 * lSun) +
                                     0.10 * cosd(2 * lMoon) - 0.09 * cosd(2 * omega)) /
                                        3600;
    }

    // Apparent sidereal time at Greenwich, degrees.
    double siderealTime() const {
        const double tu = (jd - 2451545) / 36525;
        const double mean = 280.46061837 + 360.98564736629 * (jd - 2451545) +
                            0.000387933 * tu * tu - tu * tu * tu / 38710000;
        return normalized(mean + nutation * cosd(obliquity));
    }

    Equatorial equatorial(double longitude, double latitude) const {
        const double e = obliquity;
        return {
            normalized(std::atan2(sind(longitude) * cosd(e) - std::tan(latitude * degree) * sind(e),
                                  cosd(longitude)) /
                       degree),
            std::asin(sind(latitude) * cosd(e) + cosd(latitude) * sind(e) * sind(longitude)) /
                degree};
    }
};

struct Ecliptic {
    double longitude; // apparent, degrees
    double latitude;  // degrees
    double distance;  // kilometres
};

inline Ecliptic sun(const Instant& at) {
    const double t = at.t;
    const double l0 = 280.46646 + 36000.76983 * t + 0.0003032 * t * t;
    const double m = 357.52911 + 35999.05029 * t - 0.0001537 * t * t;
    const double c = (1.914602 - 0.004817 * t - 0.000014 * t * t) * sind(m) +
                     (0.019993 - 0.000101 * t) * sind(2 * m) + 0.000289 * sind(3 * m);
    const double e = 0.016708634 - 0.000042037 * t;
    const double radius = 1.000001018 * (1 - e * e) / (1 + e * cosd(m + c));
    // Aberration, and nutation as for every apparent place here.
    const double longitude = l0 + c - 0.00569 + at.nutation;
    return {normalized(longitude), 0, radius * 149597870.7};
}

struct MoonTerm {
    int d, m, mp, f;
    double l; // millionths of a degree
    double r; // metres
};

// The largest terms of the longitude and distance series.
inline constexpr std::array<MoonTerm, 40> moonLongitudeTerms{{
    {0, 0, 1, 0, 6288774, -20905355}, {2, 0, -1, 0, 1274027, -3699111},
    {2, 0, 0, 0, 658314, -2955968},   {0, 0, 2, 0, 213618, -569925},
    {0, 1, 0, 0, -185116, 48888},     {0, 0, 0, 2, -114332, -3149},
    {2, 0, -2, 0, 58793, 246158},     {2, -1, -1, 0, 57066, -152138},
    {2, 0, 1, 0, 53322, -170733},     {2, -1, 0, 0, 45758, -204586},
    {0, 1, -1, 0, -40923, -129620},   {1, 0, 0, 0, -34720, 108743},
    {0, 1, 1, 0, -30383, 104755},     {2, 0, 0, -2, 15327, 10321},
    {0, 0, 1, 2, -12528, 0},          {0, 0, 1, -2, 10980, 79661},
    {4, 0, -1, 0, 10675, -34782},     {0, 0, 3, 0, 10034, -23210},
    {4, 0, -2, 0, 8548, -21636},      {2, 1, -1, 0, -7888, 24208},
    {2, 1, 0, 0, -6766, 30824},       {1, 0, -1, 0, -5163, -8379},
    {1, 1, 0, 0, 4987, -16675},       {2, -1, 1, 0, 4036, -12831},
    {2, 0, 2, 0, 3994, -10445},       {4, 0, 0, 0, 3861, -11650},
    {2, 0, -3, 0, 3665, 14403},       {0, 1, -2, 0, -2689, -7003},
    {2, 0, -1, 2, -2602, 0},          {2, -1, -2, 0, 2390, 10056},
    {1, 0, 1, 0, -2348, 6322},        {2, -2, 0, 0, 2236, -9884},
    {0, 1, 2, 0, -2120, 5751},        {0, 2, 0, 0, -2069, 0},
    {2, -2, -1, 0, 2048, -4950},      {2, 0, 1, -2, -1773, 4130},
    {2, 0, 0, 2, -1595, 0},           {4, -1, -1, 0, 1215, -3958},
    {0, 0, 2, 2, -1110, 0},           {3, 0, -1, 0, -892, 3258},
}};

// The largest terms of the latitude series, millionths of a degree.
inline constexpr std::array<MoonTerm, 20> moonLatitudeTerms{{
    {0, 0, 0, 1, 5128122, 0}, {0, 0, 1, 1, 280602, 0},  {0, 0, 1, -1, 277693, 0},
    {2, 0, 0, -1, 173237, 0}, {2, 0, -1, 1, 55413, 0},  {2, 0, -1, -1, 46271, 0},
    {2, 0, 0, 1, 32573, 0},   {0, 0, 2, 1, 17198, 0},   {2, 0, 1, -1, 9266, 0},
    {0, 0, 2, -1, 8822, 0},   {2, -1, 0, -1, 8216, 0},  {2, 0, -2, -1, 4324, 0},
    {2, 0, 1, 1, 4200, 0},    {2, 1, 0, -1, -3359, 0},  {2, -1, -1, 1, 2463, 0},
    {2, -1, 0, 1, 2211, 0},   {2, -1, -1, -1, 2065, 0}, {0, 1, -1, -1, -1870, 0},
    {4, 0, -1, -1, 1828, 0},  {0, 1, 0, 1, -1794, 0},
}};

inline Ecliptic moon(const Instant& at) {
    const double t = at.t;
    const double t2 = t * t;
    const double t3 = t2 * t;
    const double lp = 218.3164477 + 481267.88123421 * t - 0.0015786 * t2 + t3 / 538841;
    const double d = 297.8501921 + 445267.1114034 * t - 0.0018819 * t2 + t3 / 545868;
    const double m = 357.5291092 + 35999.0502909 * t - 0.0001536 * t2 + t3 / 24490000;
    const double mp = 134.9633964 + 477198.8675055 * t + 0.0087414 * t2 + t3 / 69699;
    const double f = 93.2720950 + 483202.0175233 * t - 0.0036539 * t2 - t3 / 3526000;
    const double a1 = 119.75 + 131.849 * t;
    const double a2 = 53.09 + 479264.290 * t;
    const double a3 = 313.45 + 481266.484 * t;
    const double e = 1 - 0.002516 * t - 0.0000074 * t2;
    const auto eccentricity = [e](int mMultiple) {
        return std::abs(mMultiple) == 2 ? e * e : std::abs(mMultiple) == 1 ? e : 1.0;
    };
    double sumL = 0;
    double sumR = 0;
    for (const MoonTerm& term : moonLongitudeTerms) {
        const double arg = term.d * d + term.m * m + term.mp * mp + term.f * f;
        sumL += term.l * eccentricity(term.m) * sind(arg);
        sumR += term.r * eccentricity(term.m) * cosd(arg);
    }
    double sumB = 0;
    for (const MoonTerm& term : moonLatitudeTerms) {
        sumB += term.l * eccentricity(term.m) *
                sind(term.d * d + term.m * m + term.mp * mp + term.f * f);
    }
    sumL += 3958 * sind(a1) + 1962 * sind(lp - f) + 318 * sind(a2);
    sumB += -2235 * sind(lp) + 382 * sind(a3) + 175 * sind(a1 - f) + 175 * sind(a1 + f) +
            127 * sind(lp - mp) - 115 * sind(lp + mp);
    return {normalized(lp + sumL / 1e6 + at.nutation), sumB / 1e6, 385000.56 + sumR / 1000};
}

inline Equatorial sunEquatorial(const Instant& at) {
    const Ecliptic s = sun(at);
    return at.equatorial(s.longitude, 0);
}

inline Equatorial moonEquatorial(const Instant& at) {
    const Ecliptic mo = moon(at);
    return at.equatorial(mo.longitude, mo.latitude);
}

// The lit fraction of the moon's disc, 0 to 1.
inline double moonIlluminatedFraction(qint64 msecs) {
    const Instant at(msecs);
    const Ecliptic s = sun(at);
    const Ecliptic mo = moon(at);
    const double elongation = std::acos(cosd(mo.latitude) * cosd(mo.longitude - s.longitude));
    const double phaseAngle = std::atan2(s.distance * std::sin(elongation),
                                         mo.distance - s.distance * std::cos(elongation));
    return (1 + std::cos(phaseAngle)) / 2;
}

// Geocentric altitude, degrees; longitude east positive.
inline double altitude(const Equatorial& body, const Instant& at, double latitude,
                       double longitude) {
    const double hourAngle = at.siderealTime() + longitude - body.rightAscension;
    return std::asin(sind(latitude) * sind(body.declination) +
                     cosd(latitude) * cosd(body.declination) * cosd(hourAngle)) /
           degree;
}

// The altitudes of rise and set: the sun's upper limb with refraction; the moon's with its
// parallax as well.
inline double sunAboveHorizon(qint64 msecs, double latitude, double longitude) {
    const Instant at(msecs);
    return altitude(sunEquatorial(at), at, latitude, longitude) + 0.8333;
}
inline double moonAboveHorizon(qint64 msecs, double latitude, double longitude) {
    const Instant at(msecs);
    const double parallax = std::asin(6378.14 / moon(at).distance) / degree;
    return altitude(moonEquatorial(at), at, latitude, longitude) - (0.7275 * parallax - 0.5667);
}

struct RiseSet {
    std::optional<qint64> rise; // msecs since 1970
    std::optional<qint64> set;
};

// The first rise and the first set within the 24 hours from `start`, to the second.
template <typename AboveFn>
RiseSet riseSet(qint64 start, AboveFn above) {
    constexpr qint64 step = 5 * 60 * 1000;
    RiseSet found;
    double previous = above(start);
    for (qint64 t = start + step; t <= start + 86400000; t += step) {
        const double present = above(t);
        if ((previous < 0) != (present < 0)) {
            qint64 lo = t - step;
            qint64 hi = t;
            const bool rising = previous < 0;
            while (hi - lo > 1000) {
                const qint64 mid = lo + (hi - lo) / 2;
                ((above(mid) < 0) == rising ? lo : hi) = mid;
            }
            std::optional<qint64>& slot = rising ? found.rise : found.set;
            if (!slot) {
                slot = lo + (hi - lo) / 2;
            }
        }
        previous = present;
    }
    return found;
}

inline RiseSet sunRiseSet(qint64 start, double latitude, double longitude) {
    return riseSet(start, [=](qint64 t) { return sunAboveHorizon(t, latitude, longitude); });
}
inline RiseSet moonRiseSet(qint64 start, double latitude, double longitude) {
    return riseSet(start, [=](qint64 t) { return moonAboveHorizon(t, latitude, longitude); });
}

struct GroundPoint {
    double latitude;  // degrees
    double longitude; // degrees, east positive
};

// The next moment after `after` at which the moon's ecliptic longitude leads the sun's by
// `elongation` degrees, to the second.
inline qint64 nextElongation(qint64 after, double elongation) {
    const auto lead = [elongation](qint64 t) {
        const Instant at(t);
        return signedDegrees(moon(at).longitude - sun(at).longitude - elongation);
    };
    constexpr qint64 step = 3600 * 1000;
    qint64 lo = after;
    while (!(lead(lo) < 0 && lead(lo + step) >= 0 && lead(lo + step) - lead(lo) < 90)) {
        lo += step;
    }
    qint64 hi = lo + step;
    while (hi - lo > 1000) {
        const qint64 mid = lo + (hi - lo) / 2;
        (lead(mid) < 0 ? lo : hi) = mid;
    }
    return hi;
}

// Where the sun stands in the zenith.
inline GroundPoint subsolarPoint(qint64 msecs) {
    const Instant at(msecs);
    const Equatorial s = sunEquatorial(at);
    return {s.declination, signedDegrees(s.rightAscension - at.siderealTime())};
}

// How far rises and sets lie from the reference's over many days. An event close to either end
// of a day may fall on the neighbouring day on the other side, so only an event farther than
// `edge` from both ends that the other side lacks is a disagreement.
struct Deviation {
    qint64 edge = 0;
    double worstSeconds = 0;
    QStringList disagreements;

    void add(const char* what, qint64 dayStart, const std::optional<QDateTime>& ours,
             const std::optional<qint64>& reference) {
        if (ours && reference) {
            worstSeconds = std::max(
                worstSeconds, double(std::abs(ours->toMSecsSinceEpoch() - *reference)) / 1000);
        } else if (ours || reference) {
            const qint64 t = ours ? ours->toMSecsSinceEpoch() : *reference;
            if (t - dayStart > edge && dayStart + 86400000 - t > edge) {
                disagreements.append(
                    QStringLiteral("%1 %2 only %3")
                        .arg(QLatin1String(what), QLatin1String(ours ? "ours" : "reference"),
                             QDateTime::fromMSecsSinceEpoch(t).toUTC().toString(Qt::ISODate)));
            }
        }
    }
};

} // namespace tw::test::sky
