#include "grid/DesktopSnap.h"

#include <cmath>

namespace tw {

double DesktopSnap::axis(double position, double tile, std::span<const Range> neighbours,
                         std::optional<Range> bounds) {
    bool found = false;
    double best = 0;
    // Strictly smaller wins, so the first of equal candidates stays.
    const auto offer = [&](double candidate) {
        const double delta = candidate - position;
        if (!found || std::abs(delta) < std::abs(best)) {
            best = delta;
            found = true;
        }
    };
    for (const Range& n : neighbours) {
        offer(n.lo);
        offer(n.hi - tile);
        offer(n.hi + gap);
        offer(n.lo - gap - tile);
        offer((n.lo + n.hi) / 2 - tile / 2);
    }
    if (bounds) {
        offer(bounds->lo + gap);
        offer(bounds->hi - gap - tile);
        offer((bounds->lo + bounds->hi) / 2 - tile / 2);
    }
    if (found && std::abs(best) <= threshold) {
        return position + best;
    }
    return position;
}

} // namespace tw
