// Where tiles stand among the displays: the display a tile belongs to, a panel's origin clamped
// into it, and the first places of tiles that were never put on the desktop. All in internal
// points; pure functions of the screens they are given.
#pragma once

#include "model/Metrics.h"
#include "model/WidgetInstance.h"
#include "platform/Displays.h"

#include <QHash>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QUuid>

#include <optional>

namespace tw {

class DesktopGeometry {
public:
    DesktopGeometry() = delete;

    // Stands in for the screen when there is none.
    static QRectF fallbackFrame() { return QRectF(Metrics::fallbackScreen); }

    // The main display's visible frame, else the first display's, else the fallback.
    static QRectF mainVisibleFrame(const QList<ScreenInfo>& screens);
    // The visible frame of the display with which the tile shares the largest area, or, when it
    // meets none, of the display nearest to its centre.
    static QRectF visibleFrame(const QList<ScreenInfo>& screens, QPointF tileTopLeft,
                               QSizeF tileSize);
    // The panel origin for a tile whose top-left corner wants to be at `tileTopLeft`: that corner
    // clamped into its display's visible frame, short of the frame's right and bottom edges by
    // half the tile; the tile grown by the margin.
    static QPointF panelOrigin(const QList<ScreenInfo>& screens, QPointF tileTopLeft,
                               QSizeF tileSize);
    // Whether some display's visible frame (the fallback without any) holds a tile this large with
    // the screen margin around it: a size no display can hold is refused, not squeezed.
    static bool fits(const QList<ScreenInfo>& screens, QSizeF tileSize);

    // Places for tiles without a desktop position, in reading order of their logical cells: the
    // cell measured from the top-left corner of `frame` when that place is free, else the first
    // free spot. Members of one stack share a place, keyed by the stack's id.
    static QHash<QUuid, QPointF> firstPlaces(const QList<WidgetInstance>& instances,
                                             const QRectF& frame);
};

} // namespace tw
