#include "lockscreen/LockScreenSystemUI.h"

namespace tw {

const std::array<LockScreenSystemUI::Region, 3>& LockScreenSystemUI::all() {
    static const std::array<Region, 3> regions{{
        {QStringLiteral("clock"), QStringLiteral("lock.region.clock"), {0.28, 0.06, 0.44, 0.20}},
        {QStringLiteral("login"), QStringLiteral("lock.region.login"), {0.30, 0.34, 0.40, 0.34}},
        {QStringLiteral("footer"), QStringLiteral("lock.region.footer"), {0.20, 0.88, 0.60, 0.12}},
    }};
    return regions;
}

QStringList LockScreenSystemUI::collisions(const QRectF& unit) {
    QStringList hits;
    for (const Region& region : all()) {
        // Closed intervals: a shared edge counts, since the system draws right up to it.
        const bool meets = unit.left() <= region.rect.right() &&
                           unit.right() >= region.rect.left() &&
                           unit.top() <= region.rect.bottom() && unit.bottom() >= region.rect.top();
        if (meets) {
            hits.append(region.id);
        }
    }
    return hits;
}

} // namespace tw
