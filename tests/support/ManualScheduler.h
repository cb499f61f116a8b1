// A scheduler on virtual time: timers fire only inside advance(), in due order.
#pragma once

#include "ManualClock.h"
#include "platform/Scheduler.h"

#include <QPointer>

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

namespace tw::test {

class ManualScheduler final : public Scheduler {
public:
    // Advances `clock` as virtual time passes, when one is given.
    explicit ManualScheduler(ManualClock* clock = nullptr)
        : m_clock(clock) {}

    ScheduledTask singleShot(Duration delay, Duration tolerance, const QObject* context,
                             std::function<void()> action) override {
        return add({delay, delay, tolerance, false}, context, std::move(action));
    }
    ScheduledTask repeating(Duration interval, Duration tolerance, const QObject* context,
                            std::function<void()> action) override {
        return add({interval, interval, tolerance, true}, context, std::move(action));
    }

    // Runs every timer due within `by`, moving virtual time (and the clock) to each due moment.
    void advance(Duration by) {
        const Duration end = m_now + by;
        for (;;) {
            // Earliest due first; among equals, the one scheduled first.
            auto next = m_entries->end();
            for (auto it = m_entries->begin(); it != m_entries->end(); ++it) {
                if (isLive(it->second) &&
                    (next == m_entries->end() || it->second.timer.due < next->second.timer.due)) {
                    next = it;
                }
            }
            if (next == m_entries->end() || next->second.timer.due > end) {
                break;
            }
            moveTo(next->second.timer.due);
            // Copy: the action may cancel or reschedule, which touches the map.
            auto action = next->second.action;
            if (next->second.timer.repeating) {
                next->second.timer.due += std::max(next->second.timer.interval, Duration(1));
            } else {
                if (auto flag = next->second.active.lock()) {
                    *flag = false;
                }
                m_entries->erase(next);
            }
            action();
        }
        moveTo(end);
    }
    // Virtual time elapsed since construction.
    Duration elapsed() const { return m_now; }

    struct Pending {
        Duration due;
        Duration interval;
        Duration tolerance;
        bool repeating;
    };
    // The timers still active, in due order.
    std::vector<Pending> pending() const {
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
    int pendingCount() const { return static_cast<int>(pending().size()); }

private:
    struct Entry {
        Pending timer;
        QPointer<const QObject> context;
        bool hasContext;
        std::function<void()> action;
        std::weak_ptr<bool> active;
    };
    // `timer.due` is the delay from now.
    ScheduledTask add(Pending timer, const QObject* context, std::function<void()> action) {
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
    bool isLive(const Entry& entry) const {
        const auto flag = entry.active.lock();
        return flag && *flag && (!entry.hasContext || entry.context);
    }
    void moveTo(Duration at) {
        if (m_clock && at > m_now) {
            m_clock->advance(at - m_now);
        }
        m_now = std::max(m_now, at);
    }

    ManualClock* m_clock;
    Duration m_now{0};
    quint64 m_nextId = 0;
    // Shared so that a handle outliving the scheduler cancels nothing instead of crashing.
    std::shared_ptr<std::map<quint64, Entry>> m_entries =
        std::make_shared<std::map<quint64, Entry>>();
};

} // namespace tw::test
