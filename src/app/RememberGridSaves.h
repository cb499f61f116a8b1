// Every save of the application's grid is remembered on the displays of that moment, so that
// each tile keeps a home to return to when the display set changes.
#pragma once

namespace tw {

class Displays;
class GridStore;
class TopologyMemory;

// Lasts as long as both the store and the memory; the displays must outlive them.
void rememberGridSaves(const GridStore& grid, TopologyMemory& memory, const Displays& displays);

} // namespace tw
