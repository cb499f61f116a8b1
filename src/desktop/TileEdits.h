// The desktop's own changes to the grid: the first places of new tiles, the overlap sweep, a
// drop, a resize and a tile taken out of its stack. Each is one change of the layout, pushed off
// its neighbours as a drop is; while one writes, `isWriting` tells the controller that the sync
// the store asks for is the caller's to run.
#pragma once

#include "desktop/TilePlacement.h"
#include "grid/DropDecision.h"

#include <QList>
#include <QSet>
#include <QUuid>

namespace tw {

class GridStore;
class StackFronts;

class TileEdits {
public:
    TileEdits(GridStore& grid, const TilePlacement& placement, StackFronts& fronts);

    bool isWriting() const { return m_writing; }

    // Gives the tiles never put on the desktop their first places, leaving the undo history.
    void placeUnpositioned();
    // Moves the tiles on show off each other; the moves made.
    QList<TilePlacement::Move> sweep();
    // A tile let go at `shown`: saved where it is shown (clamped into its display), then stacked
    // onto a tile of its size it covers enough of, slid off the ones it overlaps, or left.
    DropDecision drop(const QUuid& id, const QRectF& shown,
                      const QList<DropDecision::Tile>& others);
    // The tile keeps its top-left corner and, grown, is pushed off the tiles it now covers; the
    // store resizes a stack whole.
    void resize(const QUuid& id, WidgetSize size);
    // The store sets the tile beside its stack and it is pushed on from there when that place is
    // taken; the member in front stays in front, though its index changes.
    void unstack(const QUuid& id);

private:
    void pushOffNeighbours(const QUuid& id);

    GridStore& m_grid;
    const TilePlacement& m_placement;
    StackFronts& m_fronts;
    bool m_writing = false;
};

} // namespace tw
