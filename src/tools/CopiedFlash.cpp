#include "tools/CopiedFlash.h"

namespace tw {

CopiedFlash::CopiedFlash(Scheduler& scheduler, const QObject* context,
                         std::function<void(QUuid)> ended)
    : m_scheduler(scheduler)
    , m_context(context)
    , m_ended(std::move(ended)) {}

void CopiedFlash::start(const QUuid& tile) {
    // A task that has fired stays in the map, spent, until replaced or forgotten: removing it
    // from inside its own action would end the timer that is running it.
    m_tasks.insert_or_assign(tile,
                             m_scheduler.singleShot(shown, Scheduler::Duration(100), m_context,
                                                    [this, tile] { m_ended(tile); }));
}

bool CopiedFlash::isOn(const QUuid& tile) const {
    const auto found = m_tasks.find(tile);
    return found != m_tasks.end() && found->second.isActive();
}

void CopiedFlash::forget(const QUuid& tile) {
    m_tasks.erase(tile);
}

} // namespace tw
