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

    static bool overlaps(const QRectF& a, const QRectF& b);

    // `rect` when it overlaps nothing in `avoiding`; else the place nearest to it (by centre)
    // that keeps `gap` from every tile of `avoiding` and lies within `bounds`, the first of equal
    // ones being a horizontal move before a vertical one, left before right, down before up;
    // `rect` itself when there is no such place. No bounds means an endless desktop.
    //
    // Each edge of the answer either stays where it was or rests on a constraint: `gap` past a
    // tile or in from an edge of `bounds`. So the candidates are every pairing of such an x and
    // such a y, and the nearest free one among them is the nearest free place of all.
    static QRectF resolve(const QRectF& rect, std::span<const QRectF> avoiding,
                          const std::optional<QRectF>& bounds, double gap);
};

} // namespace tw
