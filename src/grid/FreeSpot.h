// Where a new tile lands on a screen: the first free place from the top-left, clear of the
// tiles already there.
#pragma once

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
    static constexpr double margin = 40;
    // Kept free around every other tile.
    static constexpr double clearance = 14;
    static constexpr double step = 20;
    // Slack at the frame's bottom and right edges, against rounding.
    static constexpr double tolerance = 0.5;

    // The top-left corner (posX, posY) of the first place for a tile of `tile` size that meets no
    // rectangle of `occupied` grown by the clearance: rows from the top, each from the left, in
    // steps. Nothing when the tile is empty, too large for the frame, or the frame is full.
    static std::optional<QPointF> find(const QSizeF& tile, const QRectF& visibleFrame,
                                       std::span<const QRectF> occupied);
};

} // namespace tw
