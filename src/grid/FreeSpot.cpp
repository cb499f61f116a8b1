#include "grid/FreeSpot.h"

#include "grid/RectEdges.h"

#include <QList>

#include <cmath>

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
    QList<QRectF> grown;
    grown.reserve(static_cast<qsizetype>(occupied.size()));
    for (const QRectF& r : occupied) {
        grown.append(r.adjusted(-clearance, -clearance, clearance, clearance));
    }
    const double left = minX(visibleFrame) + margin;
    const double right = maxX(visibleFrame) - margin + tolerance;
    const double top = maxY(visibleFrame) - margin;
    const double bottom = minY(visibleFrame) + margin - tolerance;
    QList<QRectF> band;
    for (int iy = 0;; ++iy) {
        const double spotTop = top - iy * step;
        if (spotTop - h < bottom) {
            break;
        }
        // Only the tiles that reach into this row's height can stop a place in it.
        band.clear();
        for (const QRectF& r : std::as_const(grown)) {
            if (minY(r) < spotTop && maxY(r) > spotTop - h) {
                band.append(r);
            }
        }
        int ix = 0;
        while (left + ix * step + w <= right) {
            const double x = left + ix * step;
            const QRectF* hit = nullptr;
            for (const QRectF& r : std::as_const(band)) {
                if (minX(r) < x + w && maxX(r) > x) {
                    hit = &r;
                    break;
                }
            }
            if (hit == nullptr) {
                return QPointF(x, spotTop);
            }
            // Every place of this row left of the hit tile's right edge meets it too: jump past.
            const int past = static_cast<int>(std::ceil((maxX(*hit) - left) / step));
            ix = std::max(ix + 1, past);
        }
    }
    return std::nullopt;
}

} // namespace tw
