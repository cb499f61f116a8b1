#include "weather/HorizonWalk.h"

#include <cmath>

namespace tw {

namespace {

constexpr qint64 msecsPerHour = 3'600'000;

QDateTime hoursAfter(const QDateTime& start, double hours) {
    return start.addMSecs(std::llround(hours * double(msecsPerHour)));
}

} // namespace

HorizonTimes walkHorizon(const QDateTime& startOfDay, double horizon, const AltitudeAt& altitude) {
    const qint64 start = startOfDay.toMSecsSinceEpoch();
    const auto above = [&](int hour) { return altitude(start + hour * msecsPerHour) - horizon; };

    std::optional<double> rise;
    std::optional<double> set;
    double h0 = above(0);
    for (int i = 1; i <= 23; i += 2) {
        const double h1 = above(i);
        const double h2 = above(i + 1);
        const double a = (h0 + h2) / 2 - h1;
        const double b = (h2 - h0) / 2;
        const double xe = -b / (2 * a);
        const double ye = (a * xe + b) * xe + h1;
        const double discriminant = b * b - 4 * a * h1;
        int roots = 0;
        double x1 = 0;
        double x2 = 0;
        if (discriminant >= 0) {
            const double dx = std::sqrt(discriminant) / (2 * std::abs(a));
            x1 = xe - dx;
            x2 = xe + dx;
            roots = int(std::abs(x1) <= 1) + int(std::abs(x2) <= 1);
            if (x1 < -1) {
                x1 = x2;
            }
        }
        if (roots == 1) {
            (h0 < 0 ? rise : set) = i + x1;
        } else if (roots == 2) {
            rise = i + (ye < 0 ? x2 : x1);
            set = i + (ye < 0 ? x1 : x2);
        }
        h0 = h2;
        if (rise && set) {
            break;
        }
    }

    HorizonTimes times;
    if (rise && *rise >= 0 && *rise <= 24) {
        times.rise = hoursAfter(startOfDay, *rise);
    }
    if (set && *set >= 0 && *set <= 24) {
        times.set = hoursAfter(startOfDay, *set);
    }
    if (!rise && !set) {
        (h0 > 0 ? times.alwaysUp : times.alwaysDown) = true;
    }
    return times;
}

} // namespace tw
