// One still picture of a tile as a lens over the desktop picture: magnified and bent towards the
// edges, split into colour there, tinted, with a rim light. Pure and safe on any thread.
#pragma once

#include "faces/LiquidGlassParams.h"

#include <QImage>
#include <QRectF>
#include <QSize>

namespace tw {

class LiquidGlassRenderer {
public:
    // The most pixels one picture may have.
    static constexpr double maxPixels = 39'999'999;

    // The picture's size in pixels, at least 1 × 1, halves rounded away from zero; an empty size
    // when the tile is too large or its size or scale is not a usable number.
    static QSize pixelSize(const LiquidGlassParams& params);

    // The blur of the backdrop in points, and the margin of backdrop read around the tile so that
    // blur and bending have pixels to draw from.
    static double blur(double frost);
    static int marginPoints(double frost);
    // The Gaussian sigma in pixels, or zero when the blur is too small to run.
    static double blurSigma(const LiquidGlassParams& params);

    struct Shape {
        double cornerRadius; // held to half the short side: at most a capsule
        double bevel;        // the width of the curved rim
        double amplitude;    // the greatest displacement
    };
    static Shape shape(const LiquidGlassParams& params);

    // `source` is the tile's rectangle in the backdrop's pixels (top-left origin). A null
    // `backdrop` or an empty `source` draws a translucent lens of the tint. Gives a premultiplied
    // RGBA8888 picture of pixelSize(), or a null image when that size is empty.
    static QImage render(const QImage& backdrop, const QRectF& source,
                         const LiquidGlassParams& params);
};

} // namespace tw
