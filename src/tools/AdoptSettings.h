// Writes state a tool tile keeps as it runs into its settings, beside what the person chose.
#pragma once

#include "model/WidgetInstance.h"

#include <QUuid>

namespace tw {

class GridStore;

// `changes` merged into the tile's settings (an empty value removes its key) as state the tile
// keeps, not as a step to undo; nothing for a tile the grid does not hold.
void adoptSettings(GridStore& grid, const QUuid& tile, const WidgetSettings& changes);

} // namespace tw
