#include "platform/SystemClock.h"

namespace tw {

QDateTime SystemClock::now() const {
    return QDateTime::currentDateTime();
}

std::chrono::nanoseconds SystemClock::uptime() const {
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace tw
