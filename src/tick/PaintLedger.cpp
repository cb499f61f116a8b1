#include "tick/PaintLedger.h"

#include <algorithm>

namespace tw {

void PaintLedger::record(const QUuid& id, std::chrono::nanoseconds spent,
                         std::chrono::nanoseconds uptime) {
    m_paints.push_back({id, spent, uptime});
    forgetBefore(uptime);
}

void PaintLedger::forgetBefore(std::chrono::nanoseconds uptime) {
    while (!m_paints.empty() && m_paints.front().at <= uptime - window) {
        m_paints.pop_front();
    }
}

QList<PaintLedger::Cost> PaintLedger::lastMinute(std::chrono::nanoseconds uptime) {
    forgetBefore(uptime);
    QHash<QUuid, Cost> byTile;
    for (const Paint& paint : m_paints) {
        Cost& cost = byTile[paint.id];
        cost.id = paint.id;
        cost.spent += paint.spent;
        ++cost.paints;
    }
    QList<Cost> costs = byTile.values();
    std::sort(costs.begin(), costs.end(), [](const Cost& a, const Cost& b) {
        return a.spent != b.spent ? a.spent > b.spent : a.id < b.id;
    });
    return costs;
}

} // namespace tw
