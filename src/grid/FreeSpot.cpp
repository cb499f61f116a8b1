#include "grid/FreeSpot.h"

#include "grid/RectEdges.h"

#include <QList>

#include <algorithm>
#include <functional>

namespace tw {

using namespace RectEdges;

std::optional<QPointF> FreeSpot::find(const QSizeF& tile, const QRectF& visibleFrame,
                                      std::span<const QRectF> occupied) {
    const double w = tile.width();
    const double h = tile.height();
    if (!(w > 0) || !(h > 0) || w + 2 * margin > visibleFrame.width() ||
        h + 2 * margin > visibleFrame.height()) {
        return std::nullopt;
    }
    const double left = minX(visibleFrame) + margin;
    const double right = maxX(visibleFrame) - margin + tolerance;
    const double top = maxY(visibleFrame) - margin;
    const double bottom = minY(visibleFrame) + margin - tolerance;
    QList<QRectF> grown;
    QList<double> tops{top};
    grown.reserve(static_cast<qsizetype>(occupied.size()));
    for (const QRectF& r : occupied) {
        grown.append(r.adjusted(-clearance, -clearance, clearance, clearance));
        if (minY(grown.last()) < top) {
            tops.append(minY(grown.last()));
        }
    }
    std::sort(tops.begin(), tops.end(), std::greater<>());
    tops.erase(std::unique(tops.begin(), tops.end()), tops.end());
    QList<QRectF> band;
    QList<double> lefts;
    for (const double spotTop : std::as_const(tops)) {
        if (spotTop - h < bottom) {
            break;
        }
        // Only the tiles that reach into this row's height can stop a place in it.
        band.clear();
        lefts = {left};
        for (const QRectF& r : std::as_const(grown)) {
            if (minY(r) < spotTop && maxY(r) > spotTop - h) {
                band.append(r);
                if (maxX(r) > left) {
                    lefts.append(maxX(r));
                }
            }
        }
        std::sort(lefts.begin(), lefts.end());
        for (const double x : std::as_const(lefts)) {
            if (x + w > right) {
                break;
            }
            const bool free = std::none_of(band.cbegin(), band.cend(), [&](const QRectF& r) {
                return minX(r) < x + w && maxX(r) > x;
            });
            if (free) {
                return QPointF(x, spotTop);
            }
        }
    }
    return std::nullopt;
}

} // namespace tw
