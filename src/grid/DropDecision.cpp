#include "grid/DropDecision.h"

#include "grid/OverlapResolver.h"
#include "grid/RectEdges.h"

#include <QVarLengthArray>

#include <algorithm>

namespace tw {

using namespace RectEdges;

DropDecision DropDecision::decide(WidgetSize size, const QRectF& rect, std::span<const Tile> others,
                                  const std::optional<QRectF>& bounds) {
    if (!(rect.width() > 0) || !(rect.height() > 0)) {
        return {Outcome::ignore, {}, rect};
    }
    const double area = rect.width() * rect.height();
    const Tile* target = nullptr;
    double bestShare = 0;
    for (const Tile& other : others) {
        if (other.size != size) {
            continue;
        }
        const double w = overlapWidth(rect, other.rect);
        const double h = overlapHeight(rect, other.rect);
        if (w <= 0 || h <= 0) {
            continue;
        }
        const double smaller = std::min(area, other.rect.width() * other.rect.height());
        const double share = w * h / smaller;
        // The highest share wins; the first of equal ones stays.
        if (share >= stackingShare && (target == nullptr || share > bestShare)) {
            target = &other;
            bestShare = share;
        }
    }
    if (target != nullptr) {
        return {Outcome::stack, target->id, rect};
    }
    QVarLengthArray<QRectF, 64> avoiding;
    avoiding.reserve(static_cast<qsizetype>(others.size()));
    for (const Tile& other : others) {
        avoiding.append(other.rect);
    }
    const QRectF resolved = OverlapResolver::resolve(
        rect, std::span<const QRectF>(avoiding.constData(), static_cast<size_t>(avoiding.size())),
        bounds, gap);
    if (resolved == rect) {
        return {Outcome::stay, {}, rect};
    }
    return {Outcome::slide, {}, resolved};
}

} // namespace tw
