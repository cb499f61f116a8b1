// The machine's own clocks.
#pragma once

#include "platform/Clock.h"

namespace tw {

class SystemClock final : public Clock {
public:
    QDateTime now() const override;
    std::chrono::nanoseconds uptime() const override;
};

} // namespace tw
