// Edges of a rectangle in the internal y-up space, where QRectF's top() is the lowest edge; these
// names say which edge is meant.
#pragma once

#include <QRectF>

#include <algorithm>

namespace tw::RectEdges {

inline double minX(const QRectF& r) {
    return r.x();
}
inline double maxX(const QRectF& r) {
    return r.x() + r.width();
}
inline double minY(const QRectF& r) {
    return r.y();
}
inline double maxY(const QRectF& r) {
    return r.y() + r.height();
}
inline QPointF centre(const QRectF& r) {
    return {r.x() + r.width() / 2, r.y() + r.height() / 2};
}

// Width and height of the common part, each 0 or less when there is none.
inline double overlapWidth(const QRectF& a, const QRectF& b) {
    return std::min(maxX(a), maxX(b)) - std::max(minX(a), minX(b));
}
inline double overlapHeight(const QRectF& a, const QRectF& b) {
    return std::min(maxY(a), maxY(b)) - std::max(minY(a), minY(b));
}

// A tile's rectangle from its top-left corner (posX, posY) and its size.
inline QRectF tileRect(double posX, double posY, const QSizeF& size) {
    return {posX, posY - size.height(), size.width(), size.height()};
}

} // namespace tw::RectEdges
