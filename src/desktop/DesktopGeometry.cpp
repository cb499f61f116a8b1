#include "desktop/DesktopGeometry.h"

#include "grid/FreeSpot.h"
#include "grid/GridStore.h"
#include "grid/OverlapResolver.h"
#include "grid/RectEdges.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tw {

namespace {

double distanceToRect(QPointF p, const QRectF& r) {
    const double dx = std::max({RectEdges::minX(r) - p.x(), 0.0, p.x() - RectEdges::maxX(r)});
    const double dy = std::max({RectEdges::minY(r) - p.y(), 0.0, p.y() - RectEdges::maxY(r)});
    return std::hypot(dx, dy);
}

double clampInto(double value, double lo, double hi) {
    return hi < lo ? lo : std::clamp(value, lo, hi);
}

} // namespace

QRectF DesktopGeometry::mainVisibleFrame(const QList<ScreenInfo>& screens) {
    for (const ScreenInfo& screen : screens) {
        if (screen.isMain) {
            return screen.visibleFrame;
        }
    }
    return screens.isEmpty() ? fallbackFrame() : screens.first().visibleFrame;
}

QRectF DesktopGeometry::visibleFrame(const QList<ScreenInfo>& screens, QPointF tileTopLeft,
                                     QSizeF tileSize) {
    if (screens.isEmpty()) {
        return fallbackFrame();
    }
    const QRectF tile = RectEdges::tileRect(tileTopLeft.x(), tileTopLeft.y(), tileSize);
    const ScreenInfo* best = nullptr;
    double bestArea = 0;
    for (const ScreenInfo& screen : screens) {
        const double w = RectEdges::overlapWidth(tile, screen.frame);
        const double h = RectEdges::overlapHeight(tile, screen.frame);
        if (w > 0 && h > 0 && w * h > bestArea) {
            bestArea = w * h;
            best = &screen;
        }
    }
    if (best == nullptr) {
        const QPointF centre = RectEdges::centre(tile);
        double nearest = std::numeric_limits<double>::infinity();
        for (const ScreenInfo& screen : screens) {
            const double d = distanceToRect(centre, screen.frame);
            if (d < nearest) {
                nearest = d;
                best = &screen;
            }
        }
    }
    return best->visibleFrame;
}

QPointF DesktopGeometry::panelOrigin(const QList<ScreenInfo>& screens, QPointF tileTopLeft,
                                     QSizeF tileSize) {
    const QRectF frame = visibleFrame(screens, tileTopLeft, tileSize);
    // Only the top-left corner is held, so a tile reaching onto a neighbouring display stands where
    // it was put. The right and bottom limits keep half of the tile on its display, so that none
    // is lost past an edge; a tile that belongs to a display beside another has that much on it.
    const double x = clampInto(tileTopLeft.x(), RectEdges::minX(frame),
                               RectEdges::maxX(frame) - tileSize.width() / 2);
    const double top = clampInto(tileTopLeft.y(), RectEdges::minY(frame) + tileSize.height() / 2,
                                 RectEdges::maxY(frame));
    return {x - Metrics::panelMargin, top - tileSize.height() - Metrics::panelMargin};
}

QHash<QUuid, QPointF> DesktopGeometry::firstPlaces(const QList<WidgetInstance>& instances,
                                                   const QRectF& frame) {
    QList<WidgetInstance> unplaced;
    QList<QRectF> occupied;
    QSet<QUuid> keys;
    for (const WidgetInstance& instance : instances) {
        const QUuid key = instance.stackID.value_or(instance.id);
        if (instance.posX && instance.posY) {
            occupied.append(
                RectEdges::tileRect(*instance.posX, *instance.posY, instance.pixelSize()));
        } else if (!keys.contains(key)) {
            keys.insert(key);
            unplaced.append(instance);
        }
    }
    std::stable_sort(unplaced.begin(), unplaced.end(), [](const auto& a, const auto& b) {
        return std::tie(a.page, a.row, a.col, a.order) < std::tie(b.page, b.row, b.col, b.order);
    });
    QHash<QUuid, QPointF> places;
    for (const WidgetInstance& instance : unplaced) {
        const QSizeF size = instance.pixelSize();
        std::optional<QPointF> spot;
        if (instance.isPlaced()) {
            const QPointF cell(frame.x() + GridStore::presetInset +
                                   instance.col * GridStore::presetPitch,
                               RectEdges::maxY(frame) - GridStore::presetInset -
                                   instance.row * GridStore::presetPitch);
            const QRectF rect = RectEdges::tileRect(cell.x(), cell.y(), size);
            const bool free =
                std::none_of(occupied.cbegin(), occupied.cend(),
                             [&](const QRectF& o) { return OverlapResolver::overlaps(rect, o); });
            if (free && frame.contains(rect)) {
                spot = cell;
            }
        }
        if (!spot) {
            spot = FreeSpot::find(size, frame, occupied);
        }
        if (spot) {
            places.insert(instance.stackID.value_or(instance.id), *spot);
            occupied.append(RectEdges::tileRect(spot->x(), spot->y(), size));
        }
    }
    return places;
}

bool DesktopGeometry::fits(const QList<ScreenInfo>& screens, QSizeF tileSize) {
    const QSizeF room(tileSize.width() + 2 * Metrics::screenMargin,
                      tileSize.height() + 2 * Metrics::screenMargin);
    const auto holds = [&room](const QRectF& frame) {
        return room.width() <= frame.width() && room.height() <= frame.height();
    };
    if (screens.isEmpty()) {
        return holds(fallbackFrame());
    }
    return std::any_of(screens.begin(), screens.end(),
                       [&holds](const ScreenInfo& screen) { return holds(screen.visibleFrame); });
}

} // namespace tw
