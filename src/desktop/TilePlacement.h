// Where the grid's tiles belong on the displays: their panels' sizes and origins, the display
// each belongs to, and the moves that keep them apart. Reads the grid and the screens, writes
// neither; the controller applies what it says.
#pragma once

#include "model/Metrics.h"
#include "model/WidgetInstance.h"

#include <QHash>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSet>
#include <QUuid>

#include <optional>
#include <utility>

namespace tw {

class Displays;
class GridStore;
class WidgetRegistry;
struct ScreenInfo;

class TilePlacement {
public:
    static constexpr double panelMargin = Metrics::panelMargin;
    static constexpr double overlapGap = Metrics::cellSpacing;

    // A tile's new place: its top-left corner, as the grid stores it.
    using Move = std::pair<QUuid, QPointF>;

    TilePlacement(const GridStore& grid, const Displays& displays, const WidgetRegistry& registry);

    // The tiles that stand on the desktop: of a known kind, and not only for the lock screen.
    QList<WidgetInstance> onDesktop() const;

    // The panel's size for a tile: the tile grown by the margin on every side.
    static QSizeF windowSize(const WidgetInstance& instance);
    static QPointF topLeft(const QRectF& tile);
    // The panel origin (lower-left, internal points) for a tile, clamped into its display.
    QPointF origin(const WidgetInstance& instance) const;
    // The tile where it belongs, which is not where its panel stands while it slides.
    QRectF placed(const WidgetInstance& instance) const;
    // The visible frame of the display a tile belongs to; none without displays.
    std::optional<QRectF> bounds(const QRectF& tile) const;
    // A tile let go partly off its display, clamped back as it is shown.
    QRectF clamped(const QRectF& tile) const;
    // Places for the tiles never put on the desktop, on the main display.
    QHash<QUuid, QPointF> firstPlaces() const;

    // One sweep over the tiles on show in grid order, each pushed off all the others, the gap
    // apart within its display; only the tiles that move.
    QList<Move> sweep(const QSet<QUuid>& hidden) const;
    // A tile pushed off the tiles on show outside its own stack; none when it stays.
    std::optional<QPointF> pushedOff(const QUuid& id, const QSet<QUuid>& hidden) const;
    // What changes the sweep's outcome: each tile's id, size and place.
    QString signature() const;

private:
    QList<ScreenInfo> screens() const;
    QRectF visibleFrame(const QRectF& tile) const;

    const GridStore& m_grid;
    const Displays& m_displays;
    const WidgetRegistry& m_registry;
};

} // namespace tw
