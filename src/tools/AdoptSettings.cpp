#include "tools/AdoptSettings.h"

#include "grid/GridStore.h"

namespace tw {

void adoptSettings(GridStore& grid, const QUuid& tile, const WidgetSettings& changes) {
    const std::optional<WidgetInstance> instance = grid.instance(tile);
    if (!instance) {
        return;
    }
    WidgetSettings settings = instance->settings.value_or(WidgetSettings());
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        settings.insert(it.key(), it.value());
    }
    grid.replaceSettings(tile, settings, GridStore::History::adopted);
}

} // namespace tw
