#include "desktop/TileEdits.h"

#include "grid/GridStore.h"
#include "grid/StackFronts.h"

#include <QScopedValueRollback>

namespace tw {

TileEdits::TileEdits(GridStore& grid, const TilePlacement& placement, StackFronts& fronts)
    : m_grid(grid)
    , m_placement(placement)
    , m_fronts(fronts) {}

void TileEdits::placeUnpositioned() {
    if (const auto places = m_placement.firstPlaces(); !places.isEmpty()) {
        QScopedValueRollback<bool> writing(m_writing, true);
        m_grid.placeUnpositioned(places);
    }
}

QList<TilePlacement::Move> TileEdits::sweep() {
    const auto moves = m_placement.sweep(m_fronts.hidden());
    if (!moves.isEmpty()) {
        QScopedValueRollback<bool> writing(m_writing, true);
        m_grid.updatePositions(moves);
    }
    return moves;
}

DropDecision TileEdits::drop(const QUuid& id, const QRectF& shown,
                             const QList<DropDecision::Tile>& others) {
    const auto instance = m_grid.instance(id);
    if (!instance || shown.isEmpty()) {
        return {};
    }
    const QRectF rect = m_placement.clamped(shown);
    const DropDecision decision =
        DropDecision::decide(instance->size, rect, others, m_placement.bounds(shown));
    QScopedValueRollback<bool> writing(m_writing, true);
    const QPointF corner = TilePlacement::topLeft(rect);
    m_grid.updatePosition(id, corner.x(), corner.y());
    switch (decision.outcome) {
    case DropDecision::Outcome::stack:
        m_grid.groupIntoStack(id, decision.stackOnto);
        // The stack shows the tile that was just dropped on it.
        if (const auto grouped = m_grid.instance(id); grouped && grouped->stackID) {
            m_fronts.bringToFront(*grouped->stackID, id);
        }
        break;
    case DropDecision::Outcome::slide: {
        const QPointF slid = TilePlacement::topLeft(decision.rect);
        m_grid.updatePosition(id, slid.x(), slid.y());
        break;
    }
    case DropDecision::Outcome::stay:
    case DropDecision::Outcome::ignore:
        break;
    }
    return decision;
}

void TileEdits::resize(const QUuid& id, WidgetSize size) {
    QScopedValueRollback<bool> writing(m_writing, true);
    m_grid.setSize({id}, size);
    pushOffNeighbours(id);
}

void TileEdits::unstack(const QUuid& id) {
    const auto instance = m_grid.instance(id);
    const auto stackID = instance ? instance->stackID : std::nullopt;
    const auto front = stackID ? m_fronts.front(*stackID) : std::nullopt;
    {
        QScopedValueRollback<bool> writing(m_writing, true);
        m_grid.removeFromStack(id);
        pushOffNeighbours(id);
    }
    if (front && *front != id) {
        m_fronts.keepInFront(*stackID, *front);
    }
}

void TileEdits::pushOffNeighbours(const QUuid& id) {
    if (const auto corner = m_placement.pushedOff(id, m_fronts.hidden())) {
        m_grid.updatePosition(id, corner->x(), corner->y());
    }
}

} // namespace tw
