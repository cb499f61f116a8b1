// Makes a dragged tile click to its neighbours' edges, one axis at a time.
#pragma once

#include "model/Metrics.h"

#include <optional>
#include <span>

namespace tw {

class DesktopSnap {
public:
    DesktopSnap() = delete;

    // A closed range lo ... hi on one axis: a neighbour's extent, or the screen's.
    struct Range {
        double lo = 0;
        double hi = 0;
    };

    // How near, in points, a candidate must be to pull the tile.
    static constexpr double threshold = 14;
    // The gap kept between a tile and a neighbour or the screen's edge.
    static constexpr double gap = Metrics::cellSpacing;

    // The position of a tile of length `tile` moved to the nearest flush, gapped or centred
    // place beside a neighbour or within `bounds`, when that is at most `threshold` away;
    // otherwise `position` unchanged.
    static double axis(double position, double tile, std::span<const Range> neighbours,
                       std::optional<Range> bounds);
};

} // namespace tw
