#include "displays/LayoutProfileResolver.h"

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numeric>
#include <vector>

namespace tw {

namespace {

bool isAbove(double value, double limit) {
    return value > limit; // false for NaN, on purpose
}

bool isUsable(const LayoutDisplay& display) {
    return isAbove(display.frame.width, 1.0) && isAbove(display.frame.height, 1.0) &&
           isAbove(display.visibleFrame.width, 1.0) && isAbove(display.visibleFrame.height, 1.0);
}

// A fraction of the free travel: 0 where there is no travel or the quotient means nothing.
double fractionOfTravel(double distance, double travel) {
    if (!(travel > 0.0)) {
        return 0.0;
    }
    const double value = distance / travel;
    if (!std::isfinite(value)) {
        return 0.0;
    }
    return std::clamp(value, 0.0, 1.0);
}

// A stored fraction as a factor: only a normal positive number counts, at most 1.
double normalFraction(double value) {
    if (!std::isnormal(value) || value < 0.0) {
        return 0.0;
    }
    return std::min(value, 1.0);
}

struct Rect {
    double minX;
    double minY;
    double maxX;
    double maxY;

    bool intersects(const Rect& other) const {
        return minX < other.maxX && other.minX < maxX && minY < other.maxY && other.minY < maxY;
    }
};

Rect expandedRect(const LayoutProfileResolver::Captured& c, double margin) {
    return Rect{c.x - margin, c.topY - c.height - margin, c.x + c.width + margin, c.topY + margin};
}

class UnionFind {
public:
    explicit UnionFind(int size)
        : m_parent(static_cast<size_t>(size)) {
        std::iota(m_parent.begin(), m_parent.end(), 0);
    }
    int find(int i) {
        while (m_parent[static_cast<size_t>(i)] != i) {
            auto& parent = m_parent[static_cast<size_t>(i)];
            parent = m_parent[static_cast<size_t>(parent)];
            i = parent;
        }
        return i;
    }
    void unite(int a, int b) {
        const int rootA = find(a);
        const int rootB = find(b);
        if (rootA != rootB) {
            m_parent[static_cast<size_t>(std::max(rootA, rootB))] = std::min(rootA, rootB);
        }
    }

private:
    std::vector<int> m_parent;
};

using Captured = LayoutProfileResolver::Captured;

// Indices of the captured widgets, grouped by display id, in order of first appearance.
QList<QList<int>> byDisplayInOrder(const QList<Captured>& captured) {
    QList<QList<int>> groups;
    QHash<QString, qsizetype> groupOf;
    for (int i = 0; i < captured.size(); ++i) {
        auto it = groupOf.constFind(captured[i].display.id);
        if (it == groupOf.cend()) {
            it = groupOf.insert(captured[i].display.id, groups.size());
            groups.append(QList<int>());
        }
        groups[*it].append(i);
    }
    return groups;
}

// Widgets of one display closer than twice the margin to a neighbour form one cluster.
QList<QList<int>> clustersOf(const QList<Captured>& captured, const QList<int>& members) {
    const auto count = static_cast<int>(members.size());
    std::vector<Rect> expanded;
    expanded.reserve(static_cast<size_t>(count));
    for (const int index : members) {
        expanded.push_back(expandedRect(captured[index], LayoutProfileResolver::clusterMargin));
    }
    UnionFind sets(count);
    for (int a = 0; a < count; ++a) {
        for (int b = a + 1; b < count; ++b) {
            if (expanded[static_cast<size_t>(a)].intersects(expanded[static_cast<size_t>(b)])) {
                sets.unite(a, b);
            }
        }
    }
    QList<QList<int>> clusters;
    QHash<int, qsizetype> clusterOf;
    for (int i = 0; i < count; ++i) {
        const int root = sets.find(i);
        auto it = clusterOf.constFind(root);
        if (it == clusterOf.cend()) {
            it = clusterOf.insert(root, clusters.size());
            clusters.append(QList<int>());
        }
        clusters[*it].append(members[i]);
    }
    return clusters;
}

struct Anchors {
    LayoutAnchor horizontal = LayoutAnchor::center;
    LayoutAnchor vertical = LayoutAnchor::center;
    LayoutDisplayRect visibleFrame;
};

// One pair of anchors for a whole cluster, from where the middle of its bounding box lies.
Anchors anchorsOf(const QList<Captured>& captured, const QList<int>& cluster) {
    double minX = std::numeric_limits<double>::infinity();
    double maxX = -std::numeric_limits<double>::infinity();
    double minBottom = std::numeric_limits<double>::infinity();
    double maxTop = -std::numeric_limits<double>::infinity();
    for (const int index : cluster) {
        const Captured& c = captured[index];
        minX = std::min(minX, c.x);
        maxX = std::max(maxX, c.x + c.width);
        minBottom = std::min(minBottom, c.topY - c.height);
        maxTop = std::max(maxTop, c.topY);
    }
    const LayoutDisplayRect vf = captured[cluster.first()].display.visibleFrame;
    const double cx = vf.width > 0.0 ? ((minX + maxX) * 0.5 - vf.x) / vf.width : 0.5;
    const double cy =
        vf.height > 0.0 ? (vf.y + vf.height - (minBottom + maxTop) * 0.5) / vf.height : 0.5;
    constexpr double band = LayoutProfileResolver::centerBand;
    const LayoutAnchor horizontal = std::abs(cx - 0.5) <= band ? LayoutAnchor::center
                                    : cx < 0.5                 ? LayoutAnchor::leading
                                                               : LayoutAnchor::trailing;
    const LayoutAnchor vertical = std::abs(cy - 0.5) <= band ? LayoutAnchor::center
                                  : cy < 0.5                 ? LayoutAnchor::top
                                                             : LayoutAnchor::bottom;
    return {horizontal, vertical, vf};
}

LayoutWidgetPlacement anchoredPlacement(const Captured& c, const Anchors& anchors) {
    const LayoutDisplayRect& vf = anchors.visibleFrame;
    LayoutWidgetPlacement placement;
    placement.widgetID = c.id;
    placement.displayID = c.display.id;
    placement.displayName = c.display.name;
    placement.wasOnMainDisplay = c.display.isMain;
    placement.absoluteX = c.x;
    placement.absoluteTopY = c.topY;
    placement.normalizedX = fractionOfTravel(c.x - vf.x, std::max(vf.width - c.width, 0.0));
    placement.normalizedY =
        fractionOfTravel(vf.y + vf.height - c.topY, std::max(vf.height - c.height, 0.0));
    placement.anchorH = anchors.horizontal;
    placement.anchorV = anchors.vertical;
    switch (anchors.horizontal) {
    case LayoutAnchor::leading:
        placement.offsetX = c.x - vf.x;
        break;
    case LayoutAnchor::trailing:
        placement.offsetX = (vf.x + vf.width) - (c.x + c.width);
        break;
    default:
        placement.offsetX = (c.x + c.width * 0.5) - (vf.x + vf.width * 0.5);
        break;
    }
    switch (anchors.vertical) {
    case LayoutAnchor::top:
        placement.offsetY = (vf.y + vf.height) - c.topY;
        break;
    case LayoutAnchor::bottom:
        placement.offsetY = (c.topY - c.height) - vf.y;
        break;
    default:
        placement.offsetY = (c.topY - c.height * 0.5) - (vf.y + vf.height * 0.5);
        break;
    }
    placement.displayOriginX = c.display.frame.x;
    placement.displayOriginY = c.display.frame.y;
    return placement;
}

double squaredDistance(double x1, double y1, double x2, double y2) {
    const double dx = x1 - x2;
    const double dy = y1 - y2;
    return dx * dx + dy * dy;
}

// Several displays of the placement's name: twins of one model are told apart by their place
// in the arrangement, else by which one was main.
const LayoutDisplay* amongNamesakes(const QList<const LayoutDisplay*>& namesakes,
                                    const LayoutWidgetPlacement& placement) {
    if (namesakes.size() == 1) {
        return namesakes.first();
    }
    if (placement.displayOriginX.has_value() && placement.displayOriginY.has_value()) {
        const LayoutDisplay* nearest = namesakes.first();
        double nearestDistance = std::numeric_limits<double>::infinity();
        for (const LayoutDisplay* candidate : namesakes) {
            const double distance =
                squaredDistance(candidate->frame.x, candidate->frame.y, *placement.displayOriginX,
                                *placement.displayOriginY);
            if (distance < nearestDistance) {
                nearestDistance = distance;
                nearest = candidate;
            }
        }
        return nearest;
    }
    for (const LayoutDisplay* candidate : namesakes) {
        if (candidate->isMain == placement.wasOnMainDisplay) {
            return candidate;
        }
    }
    return namesakes.first();
}

QHash<QUuid, LayoutWidgetPlacement> byWidget(const QList<LayoutWidgetPlacement>& placements) {
    QHash<QUuid, LayoutWidgetPlacement> result;
    result.reserve(placements.size());
    for (const LayoutWidgetPlacement& placement : placements) {
        if (!result.contains(placement.widgetID)) {
            result.insert(placement.widgetID, placement);
        }
    }
    return result;
}

bool isPresent(const LayoutWidgetPlacement& placement, const QList<LayoutDisplay>& displays) {
    // Ids first: comparing names folds them, which costs far more.
    const auto sameId = [&](const LayoutDisplay& display) {
        return display.id == placement.displayID;
    };
    const auto sameName = [&](const LayoutDisplay& display) {
        return LayoutDisplay::namesMatch(display.name, placement.displayName);
    };
    return std::any_of(displays.begin(), displays.end(), sameId) ||
           (!placement.displayName.isEmpty() &&
            std::any_of(displays.begin(), displays.end(), sameName));
}

void placeByPlacements(GridLayout& layout, const QHash<QUuid, LayoutWidgetPlacement>& placements,
                       const QList<LayoutDisplay>& displays) {
    for (WidgetInstance& widget : layout.instances) {
        const auto placement = placements.constFind(widget.id);
        if (placement == placements.constEnd()) {
            continue;
        }
        const auto display = LayoutProfileResolver::targetDisplay(*placement, displays);
        if (!display) {
            continue;
        }
        const auto point =
            LayoutProfileResolver::resolvedPoint(*placement, *display, widget.pixelSize());
        widget.posX = std::isfinite(point.x) ? point.x : placement->absoluteX;
        widget.posY = std::isfinite(point.topY) ? point.topY : placement->absoluteTopY;
    }
}

// The widget stands within `tolerance` on both axes of where `placement` puts it.
bool sitsWhereItResolves(const WidgetInstance& widget, const LayoutWidgetPlacement& placement,
                         const QList<LayoutDisplay>& displays, double tolerance) {
    if (!widget.posX.has_value() || !widget.posY.has_value()) {
        return false;
    }
    const auto target = LayoutProfileResolver::targetDisplay(placement, displays);
    if (!target.has_value()) {
        return false;
    }
    const auto resolved =
        LayoutProfileResolver::resolvedPoint(placement, *target, widget.pixelSize());
    return std::abs(resolved.x - *widget.posX) <= tolerance &&
           std::abs(resolved.topY - *widget.posY) <= tolerance;
}

} // namespace

QString LayoutProfileResolver::roundTripDecimal(double value) {
    std::array<char, 64> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    QString text =
        QString::fromLatin1(buffer.data(), static_cast<qsizetype>(result.ptr - buffer.data()));
    if (std::isfinite(value) && !text.contains(QLatin1Char('.')) &&
        !text.contains(QLatin1Char('e'))) {
        text += QStringLiteral(".0");
    }
    return text;
}

QString LayoutProfileResolver::topologySignature(const QList<LayoutDisplay>& displays) {
    QStringList parts;
    parts.reserve(displays.size());
    for (const LayoutDisplay& display : displays) {
        parts.append(display.id + QLatin1Char('@') + roundTripDecimal(display.frame.x) +
                     QLatin1Char(',') + roundTripDecimal(display.frame.y) + QLatin1Char(',') +
                     roundTripDecimal(display.frame.width) + QLatin1Char('x') +
                     roundTripDecimal(display.frame.height));
    }
    std::sort(parts.begin(), parts.end());
    return parts.join(QLatin1Char(';'));
}

bool LayoutProfileResolver::isUsableTopology(const QList<LayoutDisplay>& displays) {
    return !displays.isEmpty() && std::all_of(displays.begin(), displays.end(), isUsable);
}

QHash<QUuid, LayoutWidgetPlacement>
LayoutProfileResolver::anchoredPlacements(const QList<Captured>& captured) {
    QHash<QUuid, LayoutWidgetPlacement> result;
    result.reserve(captured.size());
    for (const QList<int>& members : byDisplayInOrder(captured)) {
        for (const QList<int>& cluster : clustersOf(captured, members)) {
            const Anchors anchors = anchorsOf(captured, cluster);
            for (const int index : cluster) {
                result.insert(captured[index].id, anchoredPlacement(captured[index], anchors));
            }
        }
    }
    return result;
}

std::optional<LayoutDisplay>
LayoutProfileResolver::bestDisplay(const WidgetInstance& widget, double x, double topY,
                                   const QList<LayoutDisplay>& displays) {
    if (displays.isEmpty()) {
        return std::nullopt;
    }
    const QSizeF size = widget.pixelSize();
    const double minX = x;
    const double maxX = x + size.width();
    const double minY = topY - size.height();
    const double maxY = topY;

    int best = 0;
    double bestArea = -1.0;
    for (int i = 0; i < displays.size(); ++i) {
        const LayoutDisplayRect& vf = displays[i].visibleFrame;
        const double width = std::max(0.0, std::min(maxX, vf.maxX()) - std::max(minX, vf.minX()));
        const double height = std::max(0.0, std::min(maxY, vf.maxY()) - std::max(minY, vf.minY()));
        const double area = width * height;
        if (area > bestArea) {
            bestArea = area;
            best = i;
        }
    }
    if (bestArea > 0.0) {
        return displays[best];
    }

    const double centerX = x + size.width() * 0.5;
    const double centerY = topY - size.height() * 0.5;
    best = 0;
    double bestDistance = std::numeric_limits<double>::infinity();
    for (int i = 0; i < displays.size(); ++i) {
        const LayoutDisplayRect& vf = displays[i].visibleFrame;
        const double dx = std::max({vf.minX() - centerX, centerX - vf.maxX(), 0.0});
        const double dy = std::max({vf.minY() - centerY, centerY - vf.maxY(), 0.0});
        const double distance = dx * dx + dy * dy;
        if (distance < bestDistance) {
            bestDistance = distance;
            best = i;
        }
    }
    return displays[best];
}

std::optional<LayoutDisplay>
LayoutProfileResolver::targetDisplay(const LayoutWidgetPlacement& placement,
                                     const QList<LayoutDisplay>& displays) {
    for (const LayoutDisplay& display : displays) {
        if (display.id == placement.displayID) {
            return display;
        }
    }
    if (!placement.displayName.isEmpty()) {
        QList<const LayoutDisplay*> namesakes;
        for (const LayoutDisplay& display : displays) {
            if (LayoutDisplay::namesMatch(display.name, placement.displayName)) {
                namesakes.append(&display);
            }
        }
        if (!namesakes.isEmpty()) {
            return *amongNamesakes(namesakes, placement);
        }
    }
    if (displays.isEmpty()) {
        return std::nullopt;
    }
    const auto sameRole = std::find_if(displays.begin(), displays.end(), [&](const auto& display) {
        return display.isMain == placement.wasOnMainDisplay;
    });
    if (sameRole != displays.end()) {
        return *sameRole;
    }
    const auto main = std::find_if(displays.begin(), displays.end(),
                                   [](const LayoutDisplay& display) { return display.isMain; });
    return main != displays.end() ? *main : displays.first();
}

LayoutProfileResolver::Point
LayoutProfileResolver::resolvedPoint(const LayoutWidgetPlacement& placement,
                                     const LayoutDisplay& display, QSizeF size) {
    const LayoutDisplayRect& vf = display.visibleFrame;
    const double w = size.width();
    const double h = size.height();

    if (placement.isAnchored() && std::isfinite(*placement.offsetX) &&
        std::isfinite(*placement.offsetY)) {
        double x = 0.0;
        switch (*placement.anchorH) {
        case LayoutAnchor::center:
            x = vf.x + vf.width * 0.5 + *placement.offsetX - w * 0.5;
            break;
        case LayoutAnchor::trailing:
            x = vf.x + vf.width - *placement.offsetX - w;
            break;
        default:
            x = vf.x + *placement.offsetX;
            break;
        }
        double topY = 0.0;
        switch (*placement.anchorV) {
        case LayoutAnchor::center:
            topY = vf.y + vf.height * 0.5 + *placement.offsetY + h * 0.5;
            break;
        case LayoutAnchor::bottom:
            topY = vf.y + *placement.offsetY + h;
            break;
        default:
            topY = vf.maxY() - *placement.offsetY;
            break;
        }
        x = std::min(std::max(x, vf.x), std::max(vf.x, vf.maxX() - w));
        // Bottom first, then top: a widget taller than the display keeps its top edge on it.
        topY = std::max(topY, vf.y + h);
        topY = std::min(topY, vf.maxY());
        return {x, topY};
    }
    return {vf.x + std::max(vf.width - w, 0.0) * normalFraction(placement.normalizedX),
            vf.maxY() - std::max(vf.height - h, 0.0) * normalFraction(placement.normalizedY)};
}

LayoutProfileSnapshot LayoutProfileResolver::snapshot(const GridLayout& layout,
                                                      const QList<LayoutDisplay>& displays,
                                                      const QList<LayoutWidgetPlacement>& earlier,
                                                      const QDateTime& capturedAt) {
    QSet<QString> known;
    for (const LayoutDisplay& display : displays) {
        known.insert(display.id);
    }
    const QHash<QUuid, LayoutWidgetPlacement> previous = byWidget(earlier);

    QHash<QUuid, LayoutWidgetPlacement> kept;
    QSet<QUuid> unchanged;
    QList<Captured> captured;
    captured.reserve(layout.instances.size());

    for (const WidgetInstance& widget : layout.instances) {
        const auto found = previous.constFind(widget.id);
        const LayoutWidgetPlacement* p = found != previous.constEnd() ? &*found : nullptr;
        const QSizeF size = widget.pixelSize();

        // A visitor parked away from its absent home display stays parked while it sits where
        // its home resolves; only a real move gives it a new home.
        if (p != nullptr && !known.contains(p->displayID) &&
            sitsWhereItResolves(widget, *p, displays, visitorTolerance)) {
            kept.insert(widget.id, *p);
            continue;
        }

        const bool hasPosition = widget.posX && widget.posY && std::isfinite(*widget.posX) &&
                                 std::isfinite(*widget.posY);
        const auto display =
            hasPosition ? bestDisplay(widget, *widget.posX, *widget.posY, displays) : std::nullopt;
        if (display.has_value()) {
            if (p != nullptr && p->isAnchored() && isPresent(*p, displays) &&
                sitsWhereItResolves(widget, *p, displays, unmovedTolerance)) {
                unchanged.insert(widget.id);
            }
            // An unchanged widget still takes part, so that it holds its cluster together.
            captured.append(Captured{widget.id, *widget.posX, *widget.posY, size.width(),
                                     size.height(), *display});
        } else if (p != nullptr) {
            kept.insert(widget.id, *p);
        }
    }

    const QHash<QUuid, LayoutWidgetPlacement> anchored = anchoredPlacements(captured);

    LayoutProfileSnapshot result;
    result.layout = layout;
    result.displays = displays;
    result.capturedAt = capturedAt;
    result.placements.reserve(layout.instances.size());
    for (const WidgetInstance& widget : layout.instances) {
        if (const auto it = kept.constFind(widget.id); it != kept.constEnd()) {
            result.placements.append(*it);
        } else if (unchanged.contains(widget.id)) {
            result.placements.append(previous.value(widget.id));
        } else if (const auto a = anchored.constFind(widget.id); a != anchored.constEnd()) {
            result.placements.append(*a);
        }
    }
    return result;
}

GridLayout LayoutProfileResolver::remap(const GridLayout& layout,
                                        const QList<LayoutWidgetPlacement>& placements,
                                        const QList<LayoutDisplay>& displays) {
    if (displays.isEmpty()) {
        return layout;
    }
    GridLayout result = layout;
    placeByPlacements(result, byWidget(placements), displays);
    return result;
}

GridLayout LayoutProfileResolver::resolve(const LayoutProfileSnapshot& snapshot,
                                          const QList<LayoutDisplay>& displays) {
    if (displays.isEmpty()) {
        return snapshot.layout;
    }
    // The very set it was captured on: the very positions, not clamped again.
    if (!snapshot.displays.isEmpty() &&
        topologySignature(snapshot.displays) == topologySignature(displays)) {
        return snapshot.layout;
    }
    const LayoutProfileSnapshot upgrade = upgraded(snapshot);
    GridLayout result = upgrade.layout;
    placeByPlacements(result, byWidget(upgrade.placements), displays);
    return result;
}

LayoutProfileSnapshot LayoutProfileResolver::upgraded(const LayoutProfileSnapshot& snapshot) {
    if (std::all_of(snapshot.placements.begin(), snapshot.placements.end(),
                    [](const LayoutWidgetPlacement& p) { return p.isAnchored(); })) {
        return snapshot;
    }
    QList<Captured> captured;
    for (const LayoutWidgetPlacement& placement : snapshot.placements) {
        if (placement.isAnchored() || !std::isfinite(placement.absoluteX) ||
            !std::isfinite(placement.absoluteTopY)) {
            continue;
        }
        const auto widget = std::find_if(
            snapshot.layout.instances.begin(), snapshot.layout.instances.end(),
            [&](const WidgetInstance& instance) { return instance.id == placement.widgetID; });
        const auto display =
            std::find_if(snapshot.displays.begin(), snapshot.displays.end(),
                         [&](const LayoutDisplay& d) { return d.id == placement.displayID; });
        if (widget == snapshot.layout.instances.end() || display == snapshot.displays.end()) {
            continue;
        }
        const QSizeF size = widget->pixelSize();
        captured.append(Captured{placement.widgetID, placement.absoluteX, placement.absoluteTopY,
                                 size.width(), size.height(), *display});
    }
    const QHash<QUuid, LayoutWidgetPlacement> anchored = anchoredPlacements(captured);
    LayoutProfileSnapshot result = snapshot;
    for (LayoutWidgetPlacement& placement : result.placements) {
        if (placement.isAnchored()) {
            continue;
        }
        if (const auto it = anchored.constFind(placement.widgetID); it != anchored.constEnd()) {
            placement = *it;
        }
    }
    return result;
}

} // namespace tw
