// Converts between the internal desktop points (origin at the primary display's lower-left, y up)
// and the toolkit's global coordinates (origin at the top-left, y down).
#pragma once

#include "model/Metrics.h"

#include <QPointF>
#include <QRect>
#include <QRectF>

namespace tw {

class DesktopSpace {
public:
    // `primary` is the primary screen's geometry in the toolkit's coordinates.
    explicit DesktopSpace(const QRect& primary = Metrics::fallbackScreen)
        : m_left(primary.x())
        , m_bottom(primary.y() + primary.height()) {}

    // The screens' primary geometry as the toolkit reports it now.
    static DesktopSpace current();

    QPointF toToolkit(const QPointF& p) const { return {p.x() + m_left, m_bottom - p.y()}; }
    QPointF fromToolkit(const QPointF& p) const { return {p.x() - m_left, m_bottom - p.y()}; }
    // An internal rectangle (x, y at its lower-left) as a toolkit rectangle (x, y at its top-left).
    QRectF toToolkit(const QRectF& r) const {
        return {r.x() + m_left, m_bottom - r.y() - r.height(), r.width(), r.height()};
    }
    QRectF fromToolkit(const QRectF& r) const {
        return {r.x() - m_left, m_bottom - r.y() - r.height(), r.width(), r.height()};
    }

private:
    double m_left;
    double m_bottom;
};

} // namespace tw
