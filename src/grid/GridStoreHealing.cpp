// GridStore: bringing a loaded or incoming layout into order before anyone sees it.
#include "grid/CustomStoreHealth.h"
#include "grid/DefinitionCache.h"
#include "grid/GridStore.h"
#include "model/Metrics.h"

#include <QSet>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace tw {

namespace {
const QString kLockSize = QStringLiteral("lockSize");

// A placed instance keeps its cell when it lies within the grid and on free cells.
bool keepsCell(const WidgetInstance& instance, const QSet<GridCell>& occupied) {
    // Subtracting keeps a cell read from a file far off the grid from overflowing.
    return instance.isPlaced() && instance.col <= Metrics::gridColumns - columns(instance.size) &&
           instance.row <= Metrics::gridRows - rows(instance.size) &&
           !GridStore::cellsCovered(instance.col, instance.row, instance.size).intersects(occupied);
}

double aspect(WidgetSize size) {
    return static_cast<double>(columns(size)) / rows(size);
}
} // namespace

WidgetSize GridStore::nearest(WidgetSize wanted, const QList<WidgetSize>& sizes) {
    if (sizes.isEmpty()) {
        return wanted;
    }
    const auto distance = [&](WidgetSize s) {
        return std::abs(columns(s) - columns(wanted)) + std::abs(rows(s) - rows(wanted));
    };
    const auto ratioGap = [&](WidgetSize s) { return std::abs(aspect(s) - aspect(wanted)); };
    WidgetSize best = sizes.first();
    for (qsizetype i = 1; i < sizes.size(); ++i) {
        const WidgetSize candidate = sizes.at(i);
        if (distance(candidate) != distance(best)) {
            if (distance(candidate) < distance(best)) {
                best = candidate;
            }
        } else if (ratioGap(candidate) != ratioGap(best)) {
            if (ratioGap(candidate) < ratioGap(best)) {
                best = candidate;
            }
        } else if (cellCount(candidate) < cellCount(best)) {
            best = candidate;
        }
    }
    return best;
}

QSet<GridCell> GridStore::cellsCovered(int col, int row, WidgetSize size) {
    QSet<GridCell> cells;
    for (int c = col; c < col + columns(size); ++c) {
        for (int r = row; r < row + rows(size); ++r) {
            cells.insert(GridCell{c, r});
        }
    }
    return cells;
}

std::optional<GridCell> GridStore::freeSlot(const QSet<GridCell>& occupied, WidgetSize size) {
    for (int row = 0; row <= Metrics::gridRows - rows(size); ++row) {
        for (int col = 0; col <= Metrics::gridColumns - columns(size); ++col) {
            if (!cellsCovered(col, row, size).intersects(occupied)) {
                return GridCell{col, row};
            }
        }
    }
    return std::nullopt;
}

bool GridStore::placementOrder(const WidgetInstance& a, const WidgetInstance& b) {
    if (a.isPlaced() && b.isPlaced()) {
        return a.row != b.row ? a.row < b.row : a.col < b.col;
    }
    if (a.isPlaced() != b.isPlaced()) {
        return a.isPlaced();
    }
    return a.order < b.order;
}

void GridStore::heal(GridLayout& layout) const {
    DefinitionCache definitions(m_registry);
    dropUnknownKinds(layout, definitions);
    snapRetiredSizes(layout, definitions);
    normalizePlacements(layout);
}

void GridStore::dropUnknownKinds(GridLayout& layout, DefinitionCache& definitions) const {
    // While the custom store can't be read, its widgets stay: their definitions may come back.
    const bool customStoreHealthy = m_customHealth != nullptr && m_customHealth->isHealthy();
    layout.instances.removeIf([&](const WidgetInstance& instance) {
        if (definitions.definition(instance.kind)) {
            return false;
        }
        return customStoreHealthy || !WidgetRegistry::isCustomKind(instance.kind);
    });
}

void GridStore::snapRetiredSizes(GridLayout& layout, DefinitionCache& definitions) {
    for (qsizetype i = 0; i < layout.instances.size(); ++i) {
        WidgetInstance& instance = layout.instances[i];
        const std::optional<WidgetDefinition>& definition = definitions.definition(instance.kind);
        if (!definition || definition->metadata.allowedSizes.isEmpty()) {
            continue;
        }
        const QList<WidgetSize>& allowed = definition->metadata.allowedSizes;
        if (!allowed.contains(instance.size)) {
            instance.size = nearest(instance.size, allowed);
            // A stack holds one size only.
            if (instance.inStack()) {
                detach(layout, static_cast<int>(i));
            }
        }
        if (const std::optional<QString> lock = instance.setting(kLockSize)) {
            const std::optional<WidgetSize> lockSize = widgetSizeFromRawValue(*lock);
            if (lockSize && !allowed.contains(*lockSize)) {
                instance.settings->insert(kLockSize, rawValue(nearest(*lockSize, allowed)));
            }
        }
    }
    QList<QUuid> stackIDs;
    for (WidgetInstance& instance : layout.instances) {
        if (instance.stackID && !stackIDs.contains(*instance.stackID)) {
            stackIDs.append(*instance.stackID);
        }
        // A place in a stack whose id didn't survive decoding belongs to no stack.
        if (!instance.stackID) {
            instance.stackIndex.reset();
        }
    }
    for (const QUuid& stackID : stackIDs) {
        repairStack(layout, stackID);
    }
}

void GridStore::normalizePlacements(GridLayout& layout) {
    QList<int> pages;
    for (const WidgetInstance& instance : std::as_const(layout.instances)) {
        if (!pages.contains(instance.page)) {
            pages.append(instance.page);
        }
    }
    std::sort(pages.begin(), pages.end());
    for (const int page : pages) {
        QList<qsizetype> indices;
        for (qsizetype i = 0; i < layout.instances.size(); ++i) {
            if (layout.instances.at(i).page == page) {
                indices.append(i);
            }
        }
        std::stable_sort(indices.begin(), indices.end(), [&](qsizetype a, qsizetype b) {
            return placementOrder(layout.instances.at(a), layout.instances.at(b));
        });
        QSet<GridCell> occupied;
        for (const qsizetype i : std::as_const(indices)) {
            WidgetInstance& instance = layout.instances[i];
            if (!keepsCell(instance, occupied)) {
                // The desktop position stands either way; only the logical cell moves.
                const std::optional<GridCell> slot = freeSlot(occupied, instance.size);
                instance.col = slot ? slot->col : -1;
                instance.row = slot ? slot->row : -1;
            }
            if (instance.isPlaced()) {
                occupied.unite(cellsCovered(instance.col, instance.row, instance.size));
            }
        }
    }
}

} // namespace tw
