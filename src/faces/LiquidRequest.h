// One lens render asked for: which backdrop, which part of it and how the glass looks.
#pragma once

#include "faces/LiquidGlassParams.h"

#include <QImage>
#include <QRectF>
#include <QString>

namespace tw {

struct LiquidRequest {
    QImage backdrop;
    QString identity; // which backdrop this is; the image itself is never compared
    QRectF source;    // in the backdrop's pixels, origin at the top left
    LiquidGlassParams params;

    // The source may differ by up to half a pixel on each edge, so that a window jiggling by a
    // fraction of a pixel never causes a re-render.
    friend bool operator==(const LiquidRequest& a, const LiquidRequest& b);
};

} // namespace tw
