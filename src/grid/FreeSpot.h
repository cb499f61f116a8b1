// Where a new tile lands on a screen: the first free place from the top-left, the spacing of the
// tiles away from those already there.
#pragma once

#include "model/Metrics.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <optional>
#include <span>

namespace tw {

class FreeSpot {
public:
    FreeSpot() = delete;

    // Kept free along every side of the visible frame.
    static constexpr double margin = Metrics::screenMargin;
    // Kept free around every other tile.
    static constexpr double clearance = Metrics::cellSpacing;
    // Slack at the frame's bottom and right edges, against rounding.
    static constexpr double tolerance = 0.5;

    // The top-left corner (posX, posY) of the highest, then leftmost, place for a tile of `tile`
    // size that meets no rectangle of `occupied` grown by the clearance. Such a place has its top
    // at the frame's margin or just below a tile, and its left edge at the margin or just past a
    // tile, so on a desktop of tiles the program placed it lines up with their rows and columns.
    // Nothing when the tile is empty, too large for the frame, or the frame is full.
    static std::optional<QPointF> find(const QSizeF& tile, const QRectF& visibleFrame,
                                       std::span<const QRectF> occupied);
};

} // namespace tw
