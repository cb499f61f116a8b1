#include "desktop/DragTracker.h"

#include "grid/DesktopSnap.h"
#include "model/Metrics.h"

#include <cmath>
#include <vector>

namespace tw {

void DragTracker::press(QPointF pointer, QPointF origin, MoveNeedsShift moveNeedsShift) {
    m_start = pointer;
    m_origin = origin;
    m_pressed = true;
    m_dragging = false;
    m_moved = false;
    m_stopped = false;
    m_needsShift = moveNeedsShift;
}

std::optional<QPointF> DragTracker::move(QPointF pointer, Shift shift) {
    if (!m_pressed) {
        return std::nullopt;
    }
    const QPointF delta = pointer - m_start;
    if (!m_dragging) {
        if (std::abs(delta.x()) <= threshold && std::abs(delta.y()) <= threshold) {
            return std::nullopt;
        }
        m_dragging = true;
    }
    if (m_needsShift == MoveNeedsShift::Yes && shift == Shift::Up) {
        // Letting go of shift ends the move for the rest of this press.
        m_stopped = m_stopped || m_moved;
        return std::nullopt;
    }
    if (m_stopped) {
        return std::nullopt;
    }
    m_moved = true;
    return m_origin + delta;
}

DragTracker::Release DragTracker::release() {
    Release result = Release::Click;
    if (!m_pressed) {
        result = Release::Nothing;
    } else if (m_moved) {
        result = Release::DragEnded;
    } else if (m_dragging) {
        result = Release::Nothing;
    }
    m_pressed = false;
    m_dragging = false;
    m_moved = false;
    m_stopped = false;
    return result;
}

QPointF DragTracker::snapped(QPointF origin, QSizeF frameSize, const QList<QRectF>& neighbours,
                             const std::optional<QRectF>& bounds) {
    const QSizeF tile(frameSize.width() - 2 * Metrics::panelMargin,
                      frameSize.height() - 2 * Metrics::panelMargin);
    std::vector<DesktopSnap::Range> xs;
    std::vector<DesktopSnap::Range> ys;
    xs.reserve(static_cast<size_t>(neighbours.size()));
    ys.reserve(static_cast<size_t>(neighbours.size()));
    for (const QRectF& n : neighbours) {
        xs.push_back({n.x(), n.x() + n.width()});
        ys.push_back({n.y(), n.y() + n.height()});
    }
    std::optional<DesktopSnap::Range> bx;
    std::optional<DesktopSnap::Range> by;
    if (bounds) {
        bx = DesktopSnap::Range{bounds->x(), bounds->x() + bounds->width()};
        by = DesktopSnap::Range{bounds->y(), bounds->y() + bounds->height()};
    }
    const double x = DesktopSnap::axis(origin.x() + Metrics::panelMargin, tile.width(), xs, bx);
    const double y = DesktopSnap::axis(origin.y() + Metrics::panelMargin, tile.height(), ys, by);
    return {x - Metrics::panelMargin, y - Metrics::panelMargin};
}

} // namespace tw
