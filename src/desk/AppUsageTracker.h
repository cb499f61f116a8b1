// Turns what is in front, the time and how long the person has been idle into the ledger's
// seconds. Given everything from outside, so it runs without the system.
#pragma once

#include "desk/AppUsageLedger.h"

#include <optional>

namespace tw {

class AppUsageTracker {
public:
    struct Current {
        AppRef app;
        double since = 0;

        bool operator==(const Current&) const = default;
    };

    AppUsageLedger ledger;
    std::optional<Current> current;
    // Reading without touching anything counts this long after the last input.
    double maxIdle = 300.0;
    // What one stretch may add at most: a sleep nobody announced adds no phantom hours.
    double maxGap = 150.0;

    // Books the running stretch up to now, or up to where the person stopped being there.
    void settle(double now, double idle);
    void tick(const std::optional<AppRef>& frontmost, double now, double idle);
    // Books the running stretch and stops the clock until the next tick.
    void stop(double now, double idle);

    bool operator==(const AppUsageTracker&) const = default;
};

} // namespace tw
