// Moves a tile off the tiles it overlaps, to the nearest free place within the screen.
#pragma once

#include <QRectF>

#include <optional>
#include <span>

namespace tw {

class OverlapResolver {
public:
    OverlapResolver() = delete;

    // Intersections up to this deep, in width or in height, don't count as overlap.
    static constexpr double tolerance = 0.5;
    // Added to the gap for the step of the ring search and of the scan.
    static constexpr double extraStep = 8;
    static constexpr int maximumRings = 80;
    // Rings searched when there are no bounds.
    static constexpr int unboundedRings = 14;

    static bool overlaps(const QRectF& a, const QRectF& b);

    // `rect` when it overlaps nothing in `avoiding`; else the nearest free place among a direct
    // push past each overlapped tile (keeping `gap`), rings of steps around it, and at last a scan
    // of `bounds`; `rect` itself when there is no free place. No bounds means an endless desktop.
    static QRectF resolve(const QRectF& rect, std::span<const QRectF> avoiding,
                          const std::optional<QRectF>& bounds, double gap);

    // The free place in `bounds`, on a grid of `step` from its lower-left corner, whose centre is
    // nearest to `rect`'s; nothing without finite bounds, without a positive step, when `rect`
    // doesn't fit, or when every place overlaps.
    static std::optional<QRectF> scan(const QRectF& rect, std::span<const QRectF> avoiding,
                                      const std::optional<QRectF>& bounds, double step);
};

} // namespace tw
