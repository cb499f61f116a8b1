#include "grid/StackRotation.h"

#include <algorithm>

namespace tw {

StackRotation::Zone StackRotation::zoneAt(QPointF pointInTile, double tileWidth) {
    if (pointInTile.x() < arrowZone) {
        return Zone::previous;
    }
    if (pointInTile.x() > tileWidth - arrowZone) {
        return Zone::next;
    }
    return pointInTile.y() < dotZone ? Zone::dots : Zone::tile;
}

int StackRotation::active(const QUuid& stack, int count) const {
    return std::clamp(m_active.value(stack), 0, std::max(count - 1, 0));
}

void StackRotation::show(const QUuid& stack, int index, const QDateTime& now) {
    setActive(stack, index);
    restart(stack, now);
}

void StackRotation::step(const QUuid& stack, int by, int count, const QDateTime& now) {
    if (count < 1) {
        return;
    }
    show(stack, ((active(stack, count) + by) % count + count) % count, now);
}

void StackRotation::restart(const QUuid& stack, const QDateTime& now) {
    m_lastStep.insert(stack, now);
}

bool StackRotation::advance(const QList<Stack>& stacks, const QDateTime& now) {
    bool stepped = false;
    for (const Stack& stack : stacks) {
        if (stack.seconds <= 0) {
            continue;
        }
        const QDateTime last = m_lastStep.value(stack.id);
        if (!last.isValid()) {
            restart(stack.id, now);
            continue;
        }
        if (last.msecsTo(now) < qint64{stack.seconds} * 1000 || stack.held || stack.count < 2) {
            continue;
        }
        step(stack.id, 1, stack.count, now);
        stepped = true;
    }
    return stepped;
}

} // namespace tw
