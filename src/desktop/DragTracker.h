// Tells a click from a drag on a panel and gives the panel's origin while it is dragged, snapped
// to the neighbouring tiles; all in internal desktop points.
#pragma once

#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <optional>

namespace tw {

class DragTracker {
public:
    // Travel on one axis, in points, beyond which a press becomes a drag.
    static constexpr double threshold = 3.0;

    enum class MoveNeedsShift { No, Yes };
    enum class Shift { Up, Down };
    enum class Release { Click, DragEnded, Nothing };

    // A press at `pointer` on a panel whose frame origin is `origin`.
    void press(QPointF pointer, QPointF origin, MoveNeedsShift moveNeedsShift);
    // The frame origin the panel should take now, or nothing when it stays.
    std::optional<QPointF> move(QPointF pointer, Shift shift);
    Release release();

    bool isPressed() const { return m_pressed; }
    bool isDragging() const { return m_dragging; }
    // The tile moved during this press.
    bool hasMoved() const { return m_moved; }

    // `origin` of a panel of `frameSize` moved so that its tile snaps to the edges and centres of
    // `neighbours` (tile rectangles) and of `bounds` (a visible frame), axis by axis.
    static QPointF snapped(QPointF origin, QSizeF frameSize, const QList<QRectF>& neighbours,
                           const std::optional<QRectF>& bounds);

private:
    QPointF m_start;
    QPointF m_origin;
    bool m_pressed = false;
    bool m_dragging = false;
    bool m_moved = false;
    bool m_stopped = false;
    MoveNeedsShift m_needsShift = MoveNeedsShift::No;
};

} // namespace tw
