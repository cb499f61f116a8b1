// The shared measures of tiles and the logical grid, in points.
#pragma once

namespace tw::Metrics {

inline constexpr double cellSize = 96.0;
inline constexpr double cellSpacing = 12.0;
inline constexpr int gridColumns = 8;
inline constexpr int gridRows = 10;
inline constexpr double tileCornerRadius = 18.0;
inline constexpr double panelCornerRadius = 28.0;
inline constexpr double panelPadding = 16.0;

} // namespace tw::Metrics
