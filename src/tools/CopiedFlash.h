// The moment after a copy, per tile, when its face says "Copied": long enough to read, then gone.
#pragma once

#include "platform/ScheduledTask.h"
#include "platform/Scheduler.h"

#include <QObject>
#include <QUuid>

#include <functional>
#include <map>

namespace tw {

class CopiedFlash {
public:
    static constexpr Scheduler::Duration shown{1500};

    // `ended` runs with the tile's id when its moment is over; `context` guards it.
    CopiedFlash(Scheduler& scheduler, const QObject* context, std::function<void(QUuid)> ended);

    void start(const QUuid& tile);
    bool isOn(const QUuid& tile) const;
    void forget(const QUuid& tile);

private:
    Scheduler& m_scheduler;
    const QObject* m_context;
    std::function<void(QUuid)> m_ended;
    std::map<QUuid, ScheduledTask> m_tasks;
};

} // namespace tw
