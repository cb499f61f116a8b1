#include "faces/LiquidGlassRenderer.h"

#include "faces/LiquidBackdrop.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace tw {

namespace {

// The lens is a little more vivid than the picture behind it.
constexpr double kSaturation = 1.22;
constexpr double kMagnification = 0.955;
// The light comes from above and a little left.
constexpr double kLightX = -0.55;
constexpr double kLightY = -0.835;
// Red bends least and blue most, which splits the edge into colour.
constexpr double kDispersionRed = 0.88;
constexpr double kDispersionBlue = 1.14;

double clampedFrost(double frost) {
    return std::isfinite(frost) ? std::clamp(frost, 0.0, 1.0) : 0.0;
}

double axisWeight(double half, double offset) {
    const double gap = std::max(half - std::abs(offset), 0.5);
    const double w = 1.0 / (gap * gap * gap);
    return offset < 0 ? -w : w;
}

// One axis of a bilinear sample: the two pixels and the weight of the second.
struct Tap {
    int first = 0;
    int second = 0;
    double weight = 0;
};

struct Backdrop {
    const uchar* bits = nullptr;
    qsizetype stride = 0;
    int width = 0;
    int height = 0;
    double scale = 1;
    double margin = 0;

    static Tap tap(double at, int extent) {
        const double clamped = std::clamp(at, 0.0, extent - 1.0);
        const int first = static_cast<int>(clamped);
        return {first, std::min(first + 1, extent - 1), clamped - first};
    }
    Tap tapX(double px) const { return tap(scale * px + margin - 0.5, width); }
    Tap tapY(double py) const { return tap(scale * py + margin - 0.5, height); }

    // One channel, 0...1, between the four pixels of two taps.
    double at(const Tap& x, const Tap& y, int channel) const {
        const uchar* top = bits + y.first * stride;
        const uchar* bottom = bits + y.second * stride;
        const int a = x.first * 4 + channel;
        const int b = x.second * 4 + channel;
        const double upper = top[a] + (top[b] - top[a]) * x.weight;
        const double lower = bottom[a] + (bottom[b] - bottom[a]) * x.weight;
        return (upper + (lower - upper) * y.weight) * (1 / 255.0);
    }
    // One channel at a point in the lens's points.
    double sample(double px, double py, int channel) const {
        return at(tapX(px), tapY(py), channel);
    }
};

// What a column of the output shares from top to bottom.
struct Column {
    double dx = 0;
    double qx = 0;
    double wx = 0;
    Tap base; // the magnified, unbent sample
};

uchar toByte(double value) {
    return static_cast<uchar>(std::clamp(value * 255.0, 0.0, 255.0));
}

} // namespace

QSize LiquidGlassRenderer::pixelSize(const LiquidGlassParams& params) {
    const double w = params.size.width() * params.scale;
    const double h = params.size.height() * params.scale;
    if (!std::isfinite(w) || !std::isfinite(h) || !(params.scale > 0)) {
        return {};
    }
    const double pw = std::max(std::round(w), 1.0);
    const double ph = std::max(std::round(h), 1.0);
    if (pw * ph > maxPixels) {
        return {};
    }
    return {static_cast<int>(pw), static_cast<int>(ph)};
}

double LiquidGlassRenderer::blur(double frost) {
    return clampedFrost(frost) * 7.0 + 0.3;
}

int LiquidGlassRenderer::marginPoints(double frost) {
    return static_cast<int>(std::ceil(blur(frost) * 2.5 + 2.0));
}

double LiquidGlassRenderer::blurSigma(const LiquidGlassParams& params) {
    const double amount = params.scale * blur(params.frost);
    return amount > 0.3 ? amount * 0.5 : 0.0;
}

LiquidGlassRenderer::Shape LiquidGlassRenderer::shape(const LiquidGlassParams& params) {
    const double shortSide = std::min(params.size.width(), params.size.height());
    const double bevel = std::clamp(shortSide * 0.32, 18.0, 46.0);
    return {std::min(params.cornerRadius, shortSide / 2), bevel, bevel * 1.35};
}

QImage LiquidGlassRenderer::render(const QImage& backdrop, const QRectF& source,
                                   const LiquidGlassParams& params) {
    const QSize pixels = pixelSize(params);
    if (pixels.isEmpty()) {
        return {};
    }
    const int pw = pixels.width();
    const int ph = pixels.height();
    const double W = params.size.width();
    const double H = params.size.height();
    const double s = params.scale;
    const double f = clampedFrost(params.frost);
    const int marginPt = marginPoints(f);
    const int margin = static_cast<int>(std::round(s * marginPt));
    const QSize extended(pw + 2 * margin, ph + 2 * margin);

    QImage prepared;
    if (!backdrop.isNull() && source.width() > 0 && source.height() > 0 && W > 0 && H > 0) {
        const double mx = marginPt * (source.width() / W);
        const double my = marginPt * (source.height() / H);
        prepared = LiquidBackdrop::prepare(backdrop, source.adjusted(-mx, -my, mx, my), extended,
                                           blurSigma(params), kSaturation);
    }
    const Backdrop lens{
        prepared.constBits(),       prepared.bytesPerLine(), extended.width(), extended.height(), s,
        static_cast<double>(margin)};

    QImage output(pw, ph, QImage::Format_RGBA8888_Premultiplied);
    if (output.isNull()) {
        return {};
    }
    output.fill(0);

    const double hw = W / 2;
    const double hh = H / 2;
    const Shape lensShape = shape(params);
    const double r = lensShape.cornerRadius;
    const double bevel = lensShape.bevel;
    const double amp = lensShape.amplitude;
    const double mix = params.lightGlass ? f * 0.14 + 0.03 : f * 0.2 + 0.07;
    const double tint = params.lightGlass ? 1.0 : 0.0;
    const double focusBoost = params.focused ? 0.05 : 0.0;
    const bool hasBackdrop = !prepared.isNull();
    const double inverseBevel = 1 / bevel;

    // Everything that depends on the column alone, worked out once rather than per pixel.
    std::vector<Column> columns(pw);
    for (int i = 0; i < pw; ++i) {
        Column& column = columns[i];
        column.dx = (i + 0.5) / s - hw;
        column.qx = r - hw + std::abs(column.dx);
        column.wx = axisWeight(hw, column.dx);
        column.base = lens.tapX(hw + column.dx * kMagnification);
    }

    for (int j = 0; j < ph; ++j) {
        uchar* line = output.scanLine(j);
        const double y = (j + 0.5) / s;
        const double dy = y - hh;
        const double qy = r - hh + std::abs(dy);
        const double wy = axisWeight(hh, dy);
        const double sheen = focusBoost + (1 - y / H) * 0.045;
        const Tap baseY = lens.tapY(hh + dy * kMagnification);
        for (int i = 0; i < pw; ++i) {
            const Column& column = columns[i];
            const double dx = column.dx;
            const double qx = column.qx;
            const double ox = std::max(qx, 0.0);
            const double oy = std::max(qy, 0.0);
            // Only the corners are outside both straight edges; elsewhere the root is of zero.
            const double outside = ox > 0 || oy > 0 ? std::sqrt(ox * ox + oy * oy) : 0.0;
            const double d = std::min(std::max(qx, qy), 0.0) + outside - r;
            double coverage = 0.5 - s * d;
            if (!(coverage > 0)) {
                continue;
            }
            coverage = std::min(coverage, 1.0);
            uchar* px = line + i * 4;
            const double t = std::max(-d * inverseBevel, 0.0);

            if (t >= 1) {
                // The flat middle: no bending, so no split into colour, no shade and no rim; only
                // the magnification, the tint and the sheen.
                const double highlight = std::min(sheen, 1.0);
                const double inverse = 1 - highlight;
                double red = tint;
                double green = tint;
                double blue = tint;
                double alpha = mix * 0.9 + 0.1;
                if (hasBackdrop) {
                    red = lens.at(column.base, baseY, 0);
                    green = lens.at(column.base, baseY, 1);
                    blue = lens.at(column.base, baseY, 2);
                    red += mix * (tint - red);
                    green += mix * (tint - green);
                    blue += mix * (tint - blue);
                    alpha = 1.0;
                }
                px[0] = toByte(coverage * (highlight + red * alpha * inverse));
                px[1] = toByte(coverage * (highlight + green * alpha * inverse));
                px[2] = toByte(coverage * (highlight + blue * alpha * inverse));
                px[3] = toByte(coverage * (highlight + alpha * inverse));
                continue;
            }

            const double wx = column.wx;
            const double norm = 1 / std::sqrt(wx * wx + wy * wy);
            const double nx = wx * norm;
            const double ny = wy * norm;
            const double u = 1 - t;
            const double u2 = u * u;
            const double dome = std::sqrt(std::sqrt(1 - u2 * u2));
            const double strength = (1 - dome) * 0.55 + u2 * 0.45;

            double red = tint;
            double green = tint;
            double blue = tint;
            double baseAlpha = mix * 0.9 + 0.1;
            if (hasBackdrop) {
                const double bx = hw + dx * kMagnification;
                const double by = hh + dy * kMagnification;
                const double offX = nx * amp * strength;
                const double offY = ny * amp * strength;
                red = lens.sample(bx - offX * kDispersionRed, by - offY * kDispersionRed, 0);
                green = lens.sample(bx - offX, by - offY, 1);
                blue = lens.sample(bx - offX * kDispersionBlue, by - offY * kDispersionBlue, 2);
                red += mix * (tint - red);
                green += mix * (tint - green);
                blue += mix * (tint - blue);
                baseAlpha = 1.0;
            }

            const double dot = nx * kLightX + ny * kLightY;
            const double rim = std::max(d * (1 / 2.6) + 1, 0.0);
            double rimLight = 0;
            if (rim > 0) {
                const double smooth = rim * rim * (3 - 2 * rim);
                rimLight = smooth * (std::pow(std::abs(dot), 2.2) * 0.7 + 0.3);
                if (dot <= 0) {
                    rimLight *= 0.75;
                }
            }
            const double lit = std::max(dot, 0.0);
            const double shade = std::max(-dot, 0.0) * strength * 0.24;
            const double alpha = hasBackdrop ? baseAlpha : std::min(shade * 0.5 + baseAlpha, 1.0);
            const double highlight = std::min(sheen + lit * strength * 0.42 + rimLight, 1.0);
            const double inverse = 1 - highlight;
            const double dark = 1 - shade;

            px[0] = toByte(coverage * (highlight + dark * red * alpha * inverse));
            px[1] = toByte(coverage * (highlight + dark * green * alpha * inverse));
            px[2] = toByte(coverage * (highlight + dark * blue * alpha * inverse));
            px[3] = toByte(coverage * (highlight + alpha * inverse));
        }
    }
    output.setDevicePixelRatio(s);
    return output;
}

} // namespace tw
