#include "app/RememberGridSaves.h"

#include "displays/LayoutDisplay.h"
#include "displays/TopologyMemory.h"
#include "grid/GridStore.h"

namespace tw {

void rememberGridSaves(const GridStore& grid, TopologyMemory& memory, const Displays& displays) {
    QObject::connect(&grid, &GridStore::saved, &memory,
                     [&memory, &displays](const GridLayout& layout) {
                         // Read at the save, not now: the set changes while the program runs.
                         memory.remember(layout, LayoutDisplay::currentDisplays(displays));
                     });
}

} // namespace tw
