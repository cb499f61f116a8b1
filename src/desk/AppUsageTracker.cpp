#include "desk/AppUsageTracker.h"

#include <algorithm>

namespace tw {

void AppUsageTracker::settle(double now, double idle) {
    if (!current) {
        return;
    }
    idle = std::max(idle, 0.0);
    const double lastActive = now - idle;
    double end = std::min(lastActive + maxIdle, now);
    end = std::min(end, current->since + maxGap);
    ledger.add(current->app, current->since, end);
    if (idle >= maxIdle) {
        current.reset();
    } else {
        current->since = now;
    }
}

void AppUsageTracker::tick(const std::optional<AppRef>& frontmost, double now, double idle) {
    settle(now, idle);
    if (current && frontmost && current->app != *frontmost) {
        current = Current{.app = *frontmost, .since = now};
    }
    if (!current && frontmost && idle < maxIdle) {
        current = Current{.app = *frontmost, .since = now};
    }
    if (!frontmost) {
        current.reset();
    }
    ledger.prune(now);
}

void AppUsageTracker::stop(double now, double idle) {
    settle(now, idle);
    current.reset();
}

} // namespace tw
