#include "platform/ScheduledTask.h"

#include <utility>

namespace tw {

ScheduledTask::ScheduledTask(std::function<void()> cancel)
    : m_cancel(std::move(cancel)) {
    *m_active = true;
}

ScheduledTask::~ScheduledTask() {
    cancel();
}

ScheduledTask::ScheduledTask(ScheduledTask&& other) noexcept
    : m_cancel(std::exchange(other.m_cancel, {}))
    , m_active(std::exchange(other.m_active, std::make_shared<bool>(false))) {}

ScheduledTask& ScheduledTask::operator=(ScheduledTask&& other) noexcept {
    if (this != &other) {
        cancel();
        m_cancel = std::exchange(other.m_cancel, {});
        m_active = std::exchange(other.m_active, std::make_shared<bool>(false));
    }
    return *this;
}

void ScheduledTask::cancel() {
    if (m_cancel && *m_active) {
        *m_active = false;
        std::exchange(m_cancel, {})();
    }
    m_cancel = {};
}

bool ScheduledTask::isActive() const {
    return *m_active;
}

} // namespace tw
