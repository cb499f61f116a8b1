// Which member of each of the grid's stacks is at the front: the stacks as the grid keeps them,
// their turning on the beat and by hand, and the member kept in front when a stack changes.
#pragma once

#include "grid/StackRotation.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSet>
#include <QUuid>

#include <functional>
#include <optional>

namespace tw {

class Clock;
class GridStore;

class StackFronts {
public:
    StackFronts(const GridStore& grid, const Clock& clock);

    // Every stack's members in stack order.
    QHash<QUuid, QList<QUuid>> stacks() const;
    // The members of stacks of two or more that are not in front.
    QSet<QUuid> hidden() const;
    // The index of the member in front (0 for a stack the grid does not have).
    int active(const QUuid& stackID) const;
    std::optional<QUuid> front(const QUuid& stackID) const;

    // One beat of the rotation; a stack any of whose members is held does not turn. True when
    // any turned.
    bool advance(const QDateTime& now, const std::function<bool(const QUuid&)>& held);
    // A step by hand, which restarts the stack's period. False for a stack without members.
    bool step(const QUuid& stackID, int by);
    // The step a click at `pointInTile` of a stack member asks for (0 on the dots); none when the
    // click is the tile's own.
    static std::optional<int> stepForClick(QPointF pointInTile, double tileWidth);
    // Brings `member` to the front and restarts the period.
    void bringToFront(const QUuid& stackID, const QUuid& member);
    // Brings `member` to the front without touching the period; a member no longer in the stack
    // leaves the stack as it is.
    void keepInFront(const QUuid& stackID, const QUuid& member);
    void restart(const QUuid& stackID);

private:
    int indexOf(const QUuid& stackID, const QUuid& member) const;

    const GridStore& m_grid;
    const Clock& m_clock;
    StackRotation m_rotation;
};

} // namespace tw
