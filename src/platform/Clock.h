// The one source of "now": wall time for what people read, uptime for intervals and guards.
#pragma once

#include <QDateTime>

#include <chrono>

namespace tw {

class Clock {
public:
    virtual ~Clock() = default;

    // Wall-clock time, local time zone.
    virtual QDateTime now() const = 0;
    // Monotonic time since boot; never jumps with the wall clock.
    virtual std::chrono::nanoseconds uptime() const = 0;
};

} // namespace tw
