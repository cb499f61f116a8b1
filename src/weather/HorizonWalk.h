// Rise and set of a body over one calendar day, found by walking its altitude hour by hour.
#pragma once

#include <QDateTime>

#include <functional>
#include <optional>

namespace tw {

struct HorizonTimes {
    std::optional<QDateTime> rise;
    std::optional<QDateTime> set;
    bool alwaysUp = false;
    bool alwaysDown = false;

    bool operator==(const HorizonTimes&) const = default;
};

// The body's altitude in radians at a moment in milliseconds since 1970.
using AltitudeAt = std::function<double(qint64 msecsSinceEpoch)>;

// Crossings of `horizon` (radians) within the 24 hours from `startOfDay`: a parabola through the
// altitudes of each two-hour stretch. Found times are in the zone of `startOfDay`; a day with
// neither is always up or always down after the altitude at its end.
HorizonTimes walkHorizon(const QDateTime& startOfDay, double horizon, const AltitudeAt& altitude);

} // namespace tw
