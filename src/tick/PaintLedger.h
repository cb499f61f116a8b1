// What drawing each tile has cost: every paint's duration, kept for a minute, so that a person can
// see which tile costs what.
#pragma once

#include <QHash>
#include <QList>
#include <QUuid>

#include <chrono>
#include <deque>

namespace tw {

class PaintLedger {
public:
    static constexpr std::chrono::seconds window{60};

    struct Cost {
        QUuid id;
        std::chrono::nanoseconds spent{0};
        int paints = 0;
        bool operator==(const Cost&) const = default;
    };

    // A paint of `id` that took `spent` and ended at `uptime`.
    void record(const QUuid& id, std::chrono::nanoseconds spent, std::chrono::nanoseconds uptime);
    // Each tile's paints of the minute before `uptime`, the costliest first (ties by id).
    QList<Cost> lastMinute(std::chrono::nanoseconds uptime);

private:
    struct Paint {
        QUuid id;
        std::chrono::nanoseconds spent;
        std::chrono::nanoseconds at;
    };
    void forgetBefore(std::chrono::nanoseconds uptime);

    // In the order they ended, so the oldest leave from the front.
    std::deque<Paint> m_paints;
};

} // namespace tw
