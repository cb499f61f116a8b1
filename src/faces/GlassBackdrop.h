// The desktop picture behind one panel, for its glass: the display's picture sharp, heavily
// blurred (frosted) and lightly blurred (clear), and where the panel stands on it.
#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

namespace tw {

struct GlassBackdrop {
    // Whole-display pictures, each at its own resolution; all cover `display`.
    QImage sharp;
    QImage frosted;
    QImage clear;
    // The display's size and the panel's rectangle on it, in logical pixels from its top-left.
    QSizeF display;
    QRectF panel;
    // Which picture this is: changes with the picture, its fill and the display.
    QString identity;

    // The part of `image` under `rect` (logical pixels of the display).
    QRectF sourceIn(const QImage& image, const QRectF& rect) const {
        const double sx = image.width() / display.width();
        const double sy = image.height() / display.height();
        return {rect.x() * sx, rect.y() * sy, rect.width() * sx, rect.height() * sy};
    }
};

} // namespace tw
