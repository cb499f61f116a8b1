#include "grid/OverlapResolver.h"

#include "grid/RectEdges.h"

#include <QList>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <tuple>
#include <vector>

namespace tw {

using namespace RectEdges;

namespace {

// Positions on one axis, without repeats, the first offered keeping its place in the order.
class Positions {
public:
    Positions(double lo, double hi, double length)
        : m_lo(lo)
        , m_hi(hi)
        , m_length(length) {}

    void offer(double position) {
        if (std::isfinite(position) && position >= m_lo - OverlapResolver::tolerance &&
            position + m_length <= m_hi + OverlapResolver::tolerance &&
            !m_values.contains(position)) {
            m_values.append(position);
        }
    }
    const QList<double>& values() const { return m_values; }

private:
    double m_lo;
    double m_hi;
    double m_length;
    QList<double> m_values;
};

// One x with its next y: the places of one x, in order of y, are merged by a heap into the order of
// all places, so that only the few nearest are ever looked at.
struct Cursor {
    double distance;
    double vertical;
    qsizetype xi;
    qsizetype yi;     // an index of the y positions sorted by distance
    qsizetype yOffer; // where that y was offered

    // Nearest first; at equal distance a horizontal move, then the order of the offers.
    bool operator>(const Cursor& other) const {
        return std::tie(distance, vertical, xi, yOffer) >
               std::tie(other.distance, other.vertical, other.xi, other.yOffer);
    }
};

} // namespace

bool OverlapResolver::overlaps(const QRectF& a, const QRectF& b) {
    return overlapWidth(a, b) > tolerance && overlapHeight(a, b) > tolerance;
}

QRectF OverlapResolver::resolve(const QRectF& rect, std::span<const QRectF> avoiding,
                                const std::optional<QRectF>& bounds, double gap) {
    const auto overlapsAny = [&](const QRectF& candidate, double clearance) {
        return std::any_of(avoiding.begin(), avoiding.end(), [&](const QRectF& other) {
            return overlaps(candidate,
                            other.adjusted(-clearance, -clearance, clearance, clearance));
        });
    };
    if (!overlapsAny(rect, 0)) {
        return rect;
    }
    const double w = rect.width();
    const double h = rect.height();
    const double inf = std::numeric_limits<double>::infinity();
    Positions xs(bounds ? minX(*bounds) : -inf, bounds ? maxX(*bounds) : inf, w);
    Positions ys(bounds ? minY(*bounds) : -inf, bounds ? maxY(*bounds) : inf, h);
    xs.offer(rect.x());
    ys.offer(rect.y());
    for (const QRectF& other : avoiding) {
        xs.offer(minX(other) - gap - w);
        xs.offer(maxX(other) + gap);
        ys.offer(minY(other) - gap - h);
        ys.offer(maxY(other) + gap);
    }
    if (bounds) {
        xs.offer(minX(*bounds) + gap);
        xs.offer(maxX(*bounds) - gap - w);
        ys.offer(minY(*bounds) + gap);
        ys.offer(maxY(*bounds) - gap - h);
    }
    const QList<double>& x = xs.values();
    const QList<double>& y = ys.values();
    // The y positions by distance, the first offered first among equal ones.
    QList<qsizetype> byDistance(y.size());
    std::iota(byDistance.begin(), byDistance.end(), qsizetype{0});
    std::stable_sort(byDistance.begin(), byDistance.end(), [&](qsizetype a, qsizetype b) {
        return std::abs(y.at(a) - rect.y()) < std::abs(y.at(b) - rect.y());
    });
    const auto cursor = [&](qsizetype xi, qsizetype yi) {
        const double dx = x.at(xi) - rect.x();
        const double dy = y.at(byDistance.at(yi)) - rect.y();
        return Cursor{dx * dx + dy * dy, std::abs(dy), xi, yi, byDistance.at(yi)};
    };
    std::vector<Cursor> heap;
    if (!y.isEmpty()) {
        heap.reserve(static_cast<size_t>(x.size()));
        for (qsizetype xi = 0; xi < x.size(); ++xi) {
            heap.push_back(cursor(xi, 0));
        }
    }
    std::make_heap(heap.begin(), heap.end(), std::greater<>());
    while (!heap.empty()) {
        std::pop_heap(heap.begin(), heap.end(), std::greater<>());
        const Cursor c = heap.back();
        heap.pop_back();
        const QRectF place(x.at(c.xi), y.at(c.yOffer), w, h);
        if (!overlapsAny(place, gap)) {
            return place;
        }
        if (c.yi + 1 < y.size()) {
            heap.push_back(cursor(c.xi, c.yi + 1));
            std::push_heap(heap.begin(), heap.end(), std::greater<>());
        }
    }
    return rect;
}

} // namespace tw
