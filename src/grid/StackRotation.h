// Which member of each stack is on show, and when a stack turns by itself: one step per period,
// never while the pointer holds it; a step by hand restarts the period.
#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QPointF>
#include <QUuid>

#include <optional>

namespace tw {

class StackRotation {
public:
    // A stack as one beat sees it.
    struct Stack {
        QUuid id;
        int count = 0;   // members
        int seconds = 0; // the turning period; 0 or less: it turns only by hand
        bool held = false;
    };

    // Where a click on a stack member lands, for a point in the tile (x from its left edge, y up
    // from its bottom edge): its arrows and dots step it, the rest is the tile's own.
    enum class Zone { previous, next, dots, tile };
    static constexpr double arrowZone = 30;
    static constexpr double dotZone = 20;
    static Zone zoneAt(QPointF pointInTile, double tileWidth);

    // The member on show, held within `count`.
    int active(const QUuid& stack, int count) const;
    // Puts `index` on show, the period running on.
    void setActive(const QUuid& stack, int index) { m_active.insert(stack, index); }
    // Puts `index` on show and restarts the period.
    void show(const QUuid& stack, int index, const QDateTime& now);
    // Steps by `by` members, wrapping round, and restarts the period.
    void step(const QUuid& stack, int by, int count, const QDateTime& now);
    // Restarts the period without stepping.
    void restart(const QUuid& stack, const QDateTime& now);

    // One beat: each stack whose period has passed since its last step, not held and of two
    // members or more, steps by one. A stack seen for the first time starts its period now.
    // True when any stepped.
    bool advance(const QList<Stack>& stacks, const QDateTime& now);

private:
    QHash<QUuid, int> m_active;
    QHash<QUuid, QDateTime> m_lastStep;
};

} // namespace tw
