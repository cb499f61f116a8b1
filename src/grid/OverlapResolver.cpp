#include "grid/OverlapResolver.h"

#include "grid/RectEdges.h"

#include <QList>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tw {

using namespace RectEdges;

namespace {

bool overlapsAny(const QRectF& rect, std::span<const QRectF> avoiding) {
    return std::any_of(avoiding.begin(), avoiding.end(),
                       [&](const QRectF& other) { return OverlapResolver::overlaps(rect, other); });
}

bool within(const QRectF& rect, const std::optional<QRectF>& bounds) {
    if (!bounds) {
        return true;
    }
    const double t = OverlapResolver::tolerance;
    return minX(rect) >= minX(*bounds) - t && maxX(rect) <= maxX(*bounds) + t &&
           minY(rect) >= minY(*bounds) - t && maxY(rect) <= maxY(*bounds) + t;
}

double squaredDistance(const QPointF& a, const QPointF& b) {
    const double dx = a.x() - b.x();
    const double dy = a.y() - b.y();
    return dx * dx + dy * dy;
}

bool isFinite(const QRectF& r) {
    return std::isfinite(r.x()) && std::isfinite(r.y()) && std::isfinite(r.width()) &&
           std::isfinite(r.height());
}

} // namespace

bool OverlapResolver::overlaps(const QRectF& a, const QRectF& b) {
    return overlapWidth(a, b) > tolerance && overlapHeight(a, b) > tolerance;
}

QRectF OverlapResolver::resolve(const QRectF& rect, std::span<const QRectF> avoiding,
                                const std::optional<QRectF>& bounds, double gap) {
    if (!overlapsAny(rect, avoiding)) {
        return rect;
    }
    const QPointF origin = centre(rect);
    std::optional<QRectF> best;
    double bestDistance = std::numeric_limits<double>::infinity();
    // The first of equal candidates stays, so a direct push beats a ring step.
    const auto offer = [&](const QRectF& candidate) {
        const double distance = squaredDistance(centre(candidate), origin);
        if (distance < bestDistance && within(candidate, bounds) &&
            !overlapsAny(candidate, avoiding)) {
            best = candidate;
            bestDistance = distance;
        }
    };
    const double w = rect.width();
    const double h = rect.height();
    for (const QRectF& other : avoiding) {
        if (!overlaps(rect, other)) {
            continue;
        }
        offer(QRectF(minX(other) - gap - w, rect.y(), w, h));
        offer(QRectF(maxX(other) + gap, rect.y(), w, h));
        offer(QRectF(rect.x(), minY(other) - gap - h, w, h));
        offer(QRectF(rect.x(), maxY(other) + gap, w, h));
    }

    const double step = gap + extraStep;
    int rings = unboundedRings;
    if (bounds) {
        const double larger = std::max(bounds->width(), bounds->height());
        if (std::isfinite(larger) && step > 0) {
            rings = static_cast<int>(
                std::clamp(std::ceil(larger / step), 1.0, static_cast<double>(maximumRings)));
        }
    }
    static constexpr std::array<std::array<int, 2>, 8> directions{
        {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {-1, 1}, {1, -1}, {-1, -1}}};
    for (int i = 1; i <= rings; ++i) {
        const double d = step * i;
        for (const auto& [dx, dy] : directions) {
            offer(rect.translated(dx * d, dy * d));
        }
    }
    if (best) {
        return *best;
    }
    return scan(rect, avoiding, bounds, step).value_or(rect);
}

std::optional<QRectF> OverlapResolver::scan(const QRectF& rect, std::span<const QRectF> avoiding,
                                            const std::optional<QRectF>& bounds, double step) {
    if (!bounds || !isFinite(*bounds) || !(step > 0) || rect.width() > bounds->width() ||
        rect.height() > bounds->height()) {
        return std::nullopt;
    }
    const QPointF origin = centre(rect);
    const double w = rect.width();
    const double h = rect.height();
    std::optional<QRectF> best;
    double bestDistance = std::numeric_limits<double>::infinity();
    QList<QRectF> band;
    // Positions advance by multiplication, not by summing steps, so that far rows don't drift.
    for (int iy = 0;; ++iy) {
        const double y = minY(*bounds) + iy * step;
        if (y > maxY(*bounds) - h) {
            break;
        }
        const double dy = y + h / 2 - origin.y();
        if (dy * dy >= bestDistance) {
            // No place in this row can be strictly nearer; later rows may.
            continue;
        }
        const QRectF row(minX(*bounds), y, bounds->width(), h);
        band.clear();
        for (const QRectF& other : avoiding) {
            if (overlapHeight(row, other) > tolerance) {
                band.append(other);
            }
        }
        for (int ix = 0;;) {
            const double x = minX(*bounds) + ix * step;
            if (x > maxX(*bounds) - w) {
                break;
            }
            const double dx = x + w / 2 - origin.x();
            const double distance = dx * dx + dy * dy;
            if (distance >= bestDistance) {
                ++ix;
                continue;
            }
            const QRectF candidate(x, y, w, h);
            const auto hit = std::find_if(band.cbegin(), band.cend(), [&](const QRectF& other) {
                return overlaps(candidate, other);
            });
            if (hit == band.cend()) {
                best = candidate;
                bestDistance = distance;
                ++ix;
                continue;
            }
            // The places of this row short of the hit tile's right edge (less the tolerance)
            // overlap it too.
            const int past =
                static_cast<int>(std::ceil((maxX(*hit) - tolerance - minX(*bounds)) / step));
            ix = std::max(ix + 1, past);
        }
    }
    return best;
}

} // namespace tw
