// Scheduler over QTimer on the thread it is used from (the main thread in the application).
#pragma once

#include "platform/Scheduler.h"

namespace tw {

class QtScheduler final : public Scheduler {
public:
    ScheduledTask singleShot(Duration delay, Duration tolerance, const QObject* context,
                             std::function<void()> action) override;
    ScheduledTask repeating(Duration interval, Duration tolerance, const QObject* context,
                            std::function<void()> action) override;

private:
    static ScheduledTask start(Duration interval, Duration tolerance, const QObject* context,
                               std::function<void()> action, bool singleShot);
};

} // namespace tw
