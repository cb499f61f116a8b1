#include "desktop/TilePlacement.h"

#include "desktop/DesktopGeometry.h"
#include "grid/FreeSpot.h"
#include "grid/GridStore.h"
#include "grid/OverlapResolver.h"
#include "grid/RectEdges.h"
#include "model/WidgetRegistry.h"
#include "platform/Displays.h"

#include <QStringList>

namespace tw {

TilePlacement::TilePlacement(const GridStore& grid, const Displays& displays,
                             const WidgetRegistry& registry)
    : m_grid(grid)
    , m_displays(displays)
    , m_registry(registry) {}

QList<WidgetInstance> TilePlacement::onDesktop() const {
    QList<WidgetInstance> result;
    for (const WidgetInstance& instance : m_grid.layout().instances) {
        const auto lockOnly = instance.setting(QStringLiteral("lockOnly"));
        const bool onLockOnly =
            lockOnly && (*lockOnly == QLatin1String("true") || *lockOnly == QLatin1String("1"));
        if (!onLockOnly && m_registry.definition(instance.kind)) {
            result.append(instance);
        }
    }
    return result;
}

QSizeF TilePlacement::windowSize(const WidgetInstance& instance) {
    return instance.pixelSize() + QSizeF(2 * panelMargin, 2 * panelMargin);
}

QPointF TilePlacement::topLeft(const QRectF& tile) {
    return {tile.x(), RectEdges::maxY(tile)};
}

QList<ScreenInfo> TilePlacement::screens() const {
    return m_displays.screens();
}

QRectF TilePlacement::visibleFrame(const QRectF& tile) const {
    return DesktopGeometry::visibleFrame(screens(), topLeft(tile), tile.size());
}

QPointF TilePlacement::origin(const WidgetInstance& instance) const {
    std::optional<QPointF> corner;
    if (instance.posX && instance.posY) {
        corner = QPointF(*instance.posX, *instance.posY);
    } else {
        corner = m_grid.freeSpot(instance.kind, instance.size, instance.settings);
    }
    if (!corner) {
        const QRectF frame = DesktopGeometry::mainVisibleFrame(screens());
        corner = QPointF(frame.x() + FreeSpot::margin, RectEdges::maxY(frame) - FreeSpot::margin);
    }
    return DesktopGeometry::panelOrigin(screens(), *corner, instance.pixelSize());
}

QRectF TilePlacement::placed(const WidgetInstance& instance) const {
    return {origin(instance) + QPointF(panelMargin, panelMargin), instance.pixelSize()};
}

std::optional<QRectF> TilePlacement::bounds(const QRectF& tile) const {
    if (screens().isEmpty()) {
        return std::nullopt;
    }
    return visibleFrame(tile);
}

QRectF TilePlacement::clamped(const QRectF& tile) const {
    return {DesktopGeometry::panelOrigin(screens(), topLeft(tile), tile.size()) +
                QPointF(panelMargin, panelMargin),
            tile.size()};
}

QHash<QUuid, QPointF> TilePlacement::firstPlaces() const {
    return DesktopGeometry::firstPlaces(onDesktop(), DesktopGeometry::mainVisibleFrame(screens()));
}

QList<TilePlacement::Move> TilePlacement::sweep(const QSet<QUuid>& hidden) const {
    QList<WidgetInstance> tiles;
    QList<QRectF> rects;
    for (const WidgetInstance& tile : onDesktop()) {
        if (!hidden.contains(tile.id)) {
            tiles.append(tile);
            rects.append(placed(tile));
        }
    }
    QList<Move> moves;
    for (qsizetype i = 0; i < rects.size(); ++i) {
        QList<QRectF> others = rects;
        others.remove(i);
        const QRectF rect = rects.at(i);
        const QRectF resolved =
            OverlapResolver::resolve(rect, others, visibleFrame(rect), overlapGap);
        if (resolved != rect) {
            rects[i] = resolved;
            moves.append({tiles.at(i).id, topLeft(resolved)});
        }
    }
    return moves;
}

std::optional<QPointF> TilePlacement::pushedOff(const QUuid& id, const QSet<QUuid>& hidden) const {
    const auto tile = m_grid.instance(id);
    if (!tile) {
        return std::nullopt;
    }
    std::optional<QRectF> rect;
    QList<QRectF> avoided;
    for (const WidgetInstance& other : onDesktop()) {
        if (other.id == id) {
            rect = placed(other);
        } else if (!(tile->stackID && other.stackID == tile->stackID) &&
                   !hidden.contains(other.id)) {
            avoided.append(placed(other));
        }
    }
    if (!rect) {
        return std::nullopt;
    }
    const QRectF resolved =
        OverlapResolver::resolve(*rect, avoided, visibleFrame(*rect), overlapGap);
    if (resolved == *rect) {
        return std::nullopt;
    }
    return topLeft(resolved);
}

QString TilePlacement::signature() const {
    QStringList parts;
    for (const WidgetInstance& instance : m_grid.layout().instances) {
        parts.append(instance.id.toString(QUuid::WithoutBraces) + QLatin1Char('|') +
                     rawValue(instance.size) + QLatin1Char('|') +
                     QString::number(instance.posX.value_or(qQNaN())) + QLatin1Char('|') +
                     QString::number(instance.posY.value_or(qQNaN())));
    }
    return parts.join(QLatin1Char('\n'));
}

} // namespace tw
