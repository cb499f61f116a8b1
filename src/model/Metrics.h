// The shared measures of tiles and the logical grid, in points.
#pragma once

#include <QRect>

namespace tw::Metrics {

inline constexpr double cellSize = 96.0;
inline constexpr double cellSpacing = 12.0;
inline constexpr int gridColumns = 8;
inline constexpr int gridRows = 10;
inline constexpr double tileCornerRadius = 18.0;
inline constexpr double panelCornerRadius = 28.0;
inline constexpr double panelPadding = 16.0;
// A panel is its tile grown by this on every side: room for the shadow and the ring.
inline constexpr double panelMargin = 22.0;
// Stands in for the screen when there is none: a common laptop display.
inline constexpr QRect fallbackScreen{0, 0, 1440, 900};

// Where the program places a tile, it keeps `cellSpacing` from every other tile and `screenMargin`
// from the edges of the visible frame, so that tiles it places line up on rows and columns of
// `cellPitch` with the first desktop and the presets.
inline constexpr double cellPitch = cellSize + cellSpacing;
inline constexpr double screenMargin = 4 * cellSpacing;

} // namespace tw::Metrics
