#include "weather/MoonMath.h"

#include "text/L.h"

#include <array>
#include <cmath>
#include <numbers>

namespace tw {

namespace {

using std::numbers::pi;

constexpr double sinObliquity = 0.39778370349342274;
constexpr double cosObliquity = 0.9174792233260962;
constexpr double rad = MoonMath::rad;

struct Refracted {
    double altitude;
    double azimuth;
};

Refracted horizontal(const SkyCoordinates& sky, double d, double latitude, double longitude) {
    const double phi = latitude * rad;
    const double hourAngle = MoonMath::siderealTime(d, longitude) - sky.rightAscension;
    const double delta = sky.declination;
    const double h = MoonMath::altitude(sky, d, latitude, longitude);
    // The refraction formula diverges below the horizon; it is held at its horizon value there.
    const double hr = h < 0 ? 0 : h;
    return {h + 0.0002967 / std::tan(hr + 0.00312536 / (hr + 0.08901179)),
            std::atan2(std::sin(hourAngle),
                       std::cos(hourAngle) * std::sin(phi) - std::tan(delta) * std::cos(phi))};
}

double moonAltitude(qint64 msecs, double latitude, double longitude) {
    const double d = MoonMath::dayNumber(msecs);
    return horizontal(MoonMath::moonCoords(d).sky, d, latitude, longitude).altitude;
}

double phaseAt(double d) {
    const double p = (MoonMath::moonLongitude(d) - MoonMath::sunLongitude(d)) / (2 * pi);
    return p - std::floor(p);
}

// The signed distance of the phase position from `target`, within half a cycle.
double phaseDistance(qint64 msecs, double target) {
    const double s = phaseAt(MoonMath::dayNumber(msecs)) - target;
    return s - std::round(s);
}

} // namespace

double MoonMath::dayNumber(qint64 msecsSinceEpoch) {
    return double(msecsSinceEpoch) / 86400000.0 - 0.5 + 2440588 - 2451545;
}

double MoonMath::dayNumber(const QDateTime& at) {
    return dayNumber(at.toMSecsSinceEpoch());
}

double MoonMath::sunLongitude(double d) {
    const double m = (357.5291 + 0.98560028 * d) * rad;
    const double c = 1.9148 * std::sin(m) + 0.02 * std::sin(2 * m) + 0.0003 * std::sin(3 * m);
    return m + c * rad + 1.796593062783907 + pi;
}

SkyCoordinates MoonMath::sunCoords(double d) {
    return onEcliptic(sunLongitude(d));
}

SkyCoordinates MoonMath::onEcliptic(double longitude) {
    return {std::atan2(std::sin(longitude) * cosObliquity, std::cos(longitude)),
            std::asin(std::sin(longitude) * sinObliquity)};
}

double MoonMath::moonLongitude(double d) {
    const double D = (297.8501921 + 12.19074912 * d) * rad;
    const double M = (134.9633964 + 13.06499295 * d) * rad;
    const double F = (93.272095 + 13.22935 * d) * rad;
    const double Ms = (357.5291092 + 0.98560028 * d) * rad;
    return (218.3164477 + 13.17639648 * d + 6.289 * std::sin(M) + 1.274 * std::sin(2 * D - M) +
            0.658 * std::sin(2 * D) + 0.214 * std::sin(2 * M) - 0.186 * std::sin(Ms) -
            0.114 * std::sin(2 * F)) *
           rad;
}

MoonMath::MoonCoordinates MoonMath::moonCoords(double d) {
    const double D = (297.8501921 + 12.19074912 * d) * rad;
    const double M = (134.9633964 + 13.06499295 * d) * rad;
    const double F = (93.272095 + 13.22935 * d) * rad;
    const double lambda = moonLongitude(d);
    const double beta = (5.128 * std::sin(F) + 0.281 * std::sin(M + F) + 0.278 * std::sin(M - F) +
                         0.173 * std::sin(2 * D - F)) *
                        rad;
    const double distance =
        385001 - 20905 * std::cos(M) - 3699 * std::cos(2 * D - M) - 2956 * std::cos(2 * D);
    return {{std::atan2(std::sin(lambda) * cosObliquity - std::tan(beta) * sinObliquity,
                        std::cos(lambda)),
             std::asin(std::sin(beta) * cosObliquity +
                       std::cos(beta) * sinObliquity * std::sin(lambda))},
            distance};
}

double MoonMath::siderealTime(double d, double longitude) {
    return (280.16 + 360.9856235 * d) * rad + longitude * rad;
}

double MoonMath::altitude(const SkyCoordinates& sky, double d, double latitude, double longitude) {
    return altitudeAt(sky, siderealTime(d, longitude), latitude);
}

double MoonMath::altitudeAt(const SkyCoordinates& sky, double siderealTime, double latitude) {
    const double phi = latitude * rad;
    const double hourAngle = siderealTime - sky.rightAscension;
    return std::asin(std::sin(phi) * std::sin(sky.declination) +
                     std::cos(phi) * std::cos(sky.declination) * std::cos(hourAngle));
}

MoonMath::Illumination MoonMath::illumination(const QDateTime& at) {
    constexpr double sunDistance = 1.49598e8;
    const double d = dayNumber(at);
    const SkyCoordinates sun = sunCoords(d);
    const MoonCoordinates moon = moonCoords(d);
    const double ds = sun.declination;
    const double dm = moon.sky.declination;
    const double dRa = sun.rightAscension - moon.sky.rightAscension;
    const double elongation =
        std::acos(std::sin(ds) * std::sin(dm) + std::cos(ds) * std::cos(dm) * std::cos(dRa));
    const double i = std::atan2(sunDistance * std::sin(elongation),
                                moon.distance - sunDistance * std::cos(elongation));
    return {phaseAt(d), (1 + std::cos(i)) / 2,
            std::atan2(std::cos(ds) * std::sin(dRa),
                       std::sin(ds) * std::cos(dm) - std::cos(ds) * std::sin(dm) * std::cos(dRa))};
}

MoonMath::Position MoonMath::position(const QDateTime& at, double latitude, double longitude) {
    const double d = dayNumber(at);
    const MoonCoordinates moon = moonCoords(d);
    const Refracted seen = horizontal(moon.sky, d, latitude, longitude);
    return {seen.altitude, seen.azimuth, moon.distance};
}

MoonMath::Times MoonMath::times(QDate day, double latitude, double longitude,
                                const QTimeZone& zone) {
    return walkHorizon(day.startOfDay(zone), moonHorizon, [latitude, longitude](qint64 msecs) {
        return moonAltitude(msecs, latitude, longitude);
    });
}

QDateTime MoonMath::next(Phase phase, const QDateTime& after) {
    constexpr qint64 step = 10'800'000;
    constexpr int maxSteps = 320;
    const double target = int(phase) * 0.25;
    const qint64 start = after.toMSecsSinceEpoch();
    double previous = phaseDistance(start, target);
    for (int n = 1; n <= maxSteps; ++n) {
        qint64 hi = start + n * step;
        const double present = phaseDistance(hi, target);
        // A real crossing moves a little; the jump on the far side of the cycle moves by ~1.
        if (previous < 0 && present >= 0 && present - previous < 0.25) {
            qint64 lo = hi - step;
            for (int halving = 0; halving < 24; ++halving) {
                const qint64 mid = lo + (hi - lo) / 2;
                (phaseDistance(mid, target) < 0 ? lo : hi) = mid;
            }
            return after.addMSecs(hi - start);
        }
        previous = present;
    }
    return after.addSecs(2548800);
}

QString MoonMath::nameForPhase(double phase) {
    struct Name {
        double below;
        const char* key;
        const char* english;
    };
    static constexpr std::array<Name, 8> names{{
        {0.03, "moon.new", "New moon"},
        {0.22, "moon.waxingCrescent", "Waxing crescent"},
        {0.28, "moon.firstQuarter", "First quarter"},
        {0.47, "moon.waxingGibbous", "Waxing gibbous"},
        {0.53, "moon.full", "Full moon"},
        {0.72, "moon.waningGibbous", "Waning gibbous"},
        {0.78, "moon.lastQuarter", "Last quarter"},
        {0.97, "moon.waningCrescent", "Waning crescent"},
    }};
    for (const Name& name : names) {
        if (phase < name.below) {
            return L(name.key, QString::fromUtf8(name.english));
        }
    }
    return L(names.front().key, QString::fromUtf8(names.front().english));
}

} // namespace tw
