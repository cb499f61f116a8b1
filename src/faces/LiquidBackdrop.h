// The part of the desktop picture behind a lens, scaled to the lens's extended pixel size, blurred
// and made a little more vivid, ready to be sampled.
#pragma once

#include <QImage>
#include <QRectF>
#include <QSize>

namespace tw {

class LiquidBackdrop {
public:
    // `rect` is in the backdrop's pixels (top-left origin) and may reach past its edges, which
    // repeat outwards. A `sigma` of zero skips the blur. Gives a premultiplied RGBA8888 image of
    // `extended` pixels, or a null image when nothing usable can be made. The blur is a separable
    // Gaussian whose edges repeat outwards.
    static QImage prepare(const QImage& backdrop, const QRectF& rect, QSize extended, double sigma,
                          double saturation);
};

} // namespace tw
