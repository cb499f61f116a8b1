// Pure functions that capture where each widget sits on a set of displays and resolve such a
// capture on another set. Positions are stored per display, relative to the edge each group of
// neighbouring widgets visually belongs to, because global coordinates shift whenever a monitor
// is plugged in.
#pragma once

#include "displays/LayoutDisplay.h"
#include "displays/LayoutProfileSnapshot.h"
#include "displays/LayoutWidgetPlacement.h"
#include "model/GridLayout.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSizeF>
#include <QString>
#include <QUuid>

#include <optional>

namespace tw {

class LayoutProfileResolver {
public:
    LayoutProfileResolver() = delete;

    // A widget as the anchoring sees it: top-left corner, size, and the display it stands on.
    struct Captured {
        QUuid id;
        double x = 0.0;
        double topY = 0.0;
        double width = 0.0;
        double height = 0.0;
        LayoutDisplay display;
    };

    struct Point {
        double x = 0.0;
        double topY = 0.0;
    };

    // Widgets closer than twice this belong to one cluster and share one pair of anchors.
    static constexpr double clusterMargin = 12.0;
    // A cluster whose centre lies within this fraction of the middle is anchored to the middle.
    static constexpr double centerBand = 0.07;
    // A parked visitor within this distance of where its home resolves is still parked.
    static constexpr double visitorTolerance = 2.0;
    // A widget within this distance of its placement keeps it, so anchors don't drift.
    static constexpr double unmovedTolerance = 1.0;

    // "id@x,y,wxh" per display, sorted, joined by ";": the order of the list does not matter,
    // nor do names, visible frames or which display is main.
    static QString topologySignature(const QList<LayoutDisplay>& displays);
    // Not empty, and every frame and visible frame wider and taller than one point.
    static bool isUsableTopology(const QList<LayoutDisplay>& displays);

    // Where each widget of `layout` sits on `displays`. Widgets parked away from an absent home
    // display, and widgets that have not moved, keep their placement from `earlier`.
    static LayoutProfileSnapshot snapshot(const GridLayout& layout,
                                          const QList<LayoutDisplay>& displays,
                                          const QList<LayoutWidgetPlacement>& earlier,
                                          const QDateTime& capturedAt);
    // The captured layout on `displays`: as captured on the same set, else placed by anchors.
    static GridLayout resolve(const LayoutProfileSnapshot& snapshot,
                              const QList<LayoutDisplay>& displays);
    // Every widget with a placement moved to where that placement resolves on `displays`.
    static GridLayout remap(const GridLayout& layout,
                            const QList<LayoutWidgetPlacement>& placements,
                            const QList<LayoutDisplay>& displays);
    // Gives anchors to placements written before anchors existed, where their display is known.
    static LayoutProfileSnapshot upgraded(const LayoutProfileSnapshot& snapshot);

    static QHash<QUuid, LayoutWidgetPlacement> anchoredPlacements(const QList<Captured>& captured);
    static std::optional<LayoutDisplay> targetDisplay(const LayoutWidgetPlacement& placement,
                                                      const QList<LayoutDisplay>& displays);
    static std::optional<LayoutDisplay> bestDisplay(const WidgetInstance& widget, double x,
                                                    double topY,
                                                    const QList<LayoutDisplay>& displays);
    static Point resolvedPoint(const LayoutWidgetPlacement& placement, const LayoutDisplay& display,
                               QSizeF size);

    // The shortest decimal that reads back as the same double, with ".0" on whole numbers.
    static QString roundTripDecimal(double value);
};

} // namespace tw
