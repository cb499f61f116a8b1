#include "ManualScheduler.h"

#include <algorithm>

namespace tw::test {

ScheduledTask ManualScheduler::add(Pending timer, const QObject* context,
                                   std::function<void()> action) {
    const quint64 id = m_nextId++;
    std::weak_ptr<std::map<quint64, Entry>> entries = m_entries;
    ScheduledTask task([entries, id] {
        if (auto map = entries.lock()) {
            map->erase(id);
        }
    });
    timer.due += m_now;
    m_entries->emplace(
        id, Entry{timer, context, context != nullptr, std::move(action), task.activeFlag()});
    return task;
}

bool ManualScheduler::isLive(const Entry& entry) const {
    const auto flag = entry.active.lock();
    return flag && *flag && (!entry.hasContext || entry.context);
}

void ManualScheduler::advance(Duration by) {
    const Duration end = m_now + by;
    for (;;) {
        // Earliest due first; among equals, the one scheduled first.
        auto next = m_entries->end();
        for (auto it = m_entries->begin(); it != m_entries->end(); ++it) {
            if (!isLive(it->second)) {
                continue;
            }
            if (next == m_entries->end() || it->second.timer.due < next->second.timer.due) {
                next = it;
            }
        }
        if (next == m_entries->end() || next->second.timer.due > end) {
            break;
        }
        const Duration due = next->second.timer.due;
        if (m_clock && due > m_now) {
            m_clock->advance(due - m_now);
        }
        m_now = std::max(m_now, due);
        const quint64 id = next->first;
        // Copy: the action may cancel or reschedule, which touches the map.
        auto action = next->second.action;
        if (next->second.timer.repeating) {
            next->second.timer.due += std::max(next->second.timer.interval, Duration(1));
        } else {
            if (auto flag = next->second.active.lock()) {
                *flag = false;
            }
            m_entries->erase(id);
        }
        action();
    }
    if (m_clock && end > m_now) {
        m_clock->advance(end - m_now);
    }
    m_now = end;
}

std::vector<ManualScheduler::Pending> ManualScheduler::pending() const {
    std::vector<Pending> result;
    for (const auto& [id, entry] : *m_entries) {
        if (isLive(entry)) {
            result.push_back(entry.timer);
        }
    }
    std::sort(result.begin(), result.end(),
              [](const Pending& a, const Pending& b) { return a.due < b.due; });
    return result;
}

} // namespace tw::test
