// A scheduler on virtual time: timers fire only inside advance(), in due order.
#pragma once

#include "ManualClock.h"
#include "platform/Scheduler.h"

#include <QPointer>

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
    void advance(Duration by);
    // Virtual time elapsed since construction.
    Duration elapsed() const { return m_now; }

    struct Pending {
        Duration due;
        Duration interval;
        Duration tolerance;
        bool repeating;
    };
    // The timers still active, in due order.
    std::vector<Pending> pending() const;
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
    ScheduledTask add(Pending timer, const QObject* context, std::function<void()> action);
    bool isLive(const Entry& entry) const;

    ManualClock* m_clock;
    Duration m_now{0};
    quint64 m_nextId = 0;
    // Shared so that a handle outliving the scheduler cancels nothing instead of crashing.
    std::shared_ptr<std::map<quint64, Entry>> m_entries =
        std::make_shared<std::map<quint64, Entry>>();
};

} // namespace tw::test
