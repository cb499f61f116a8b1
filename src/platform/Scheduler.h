// Timers on the main thread: every debounce, settle, watchdog and tick goes through one of these.
#pragma once

#include "platform/ScheduledTask.h"

#include <chrono>
#include <functional>

class QObject;

namespace tw {

class Scheduler {
public:
    using Duration = std::chrono::milliseconds;

    virtual ~Scheduler() = default;

    // Runs `action` once after `delay`, unless the handle is cancelled or `context` is destroyed
    // first. `tolerance` lets the system batch wake-ups.
    [[nodiscard]] virtual ScheduledTask singleShot(Duration delay, Duration tolerance,
                                                   const QObject* context,
                                                   std::function<void()> action) = 0;
    // Runs `action` every `interval` until the handle is cancelled or `context` is destroyed.
    [[nodiscard]] virtual ScheduledTask repeating(Duration interval, Duration tolerance,
                                                  const QObject* context,
                                                  std::function<void()> action) = 0;
};

} // namespace tw
