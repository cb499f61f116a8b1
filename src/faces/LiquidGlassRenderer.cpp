#include "faces/LiquidGlassRenderer.h"

#include "faces/LiquidBackdrop.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace tw {

namespace {

// The lens is a little more vivid than the picture behind it.
constexpr double kSaturation = 1.22;
constexpr double kMagnification = 0.955;
// The light comes from above and a little left.
constexpr float kLightX = -0.55f;
constexpr float kLightY = -0.835f;
// Red bends least and blue most, which splits the edge into colour.
constexpr float kDispersion[3] = {0.88f, 1.0f, 1.14f};
constexpr float kTiny = std::numeric_limits<float>::min();

double clampedFrost(double frost) {
    return std::isfinite(frost) ? std::clamp(frost, 0.0, 1.0) : 0.0;
}

double axisWeight(double half, double offset) {
    const double gap = std::max(half - std::abs(offset), 0.5);
    const double w = 1.0 / (gap * gap * gap);
    return offset < 0 ? -w : w;
}

// What a pixel takes from its signed distance `d` to the shape's edge (negative inside): how much
// of it the shape covers (not positive outside), how strongly the curved rim bends it (zero in
// the flat middle), and the band of the rim light along the edge.
struct Edge {
    float coverage = 0;
    float strength = 0;
    float band = 0;
};

Edge edge(double d, double s, double bevel) {
    Edge e;
    e.coverage = static_cast<float>(std::min(0.5 - s * d, 1.0));
    const double t = std::max(-d / bevel, 0.0);
    if (t < 1) {
        const double u = 1 - t;
        const double u2 = u * u;
        const double dome = std::sqrt(std::sqrt(1 - u2 * u2));
        e.strength = static_cast<float>((1 - dome) * 0.55 + u2 * 0.45);
    }
    const double rim = std::max(d / 2.6 + 1, 0.0);
    e.band = static_cast<float>(rim * rim * (3 - 2 * rim));
    return e;
}

// One axis of a bilinear sample: the two pixels and the weight of the second, at a position
// clamped to the axis's pixels.
struct Tap {
    int first = 0;
    int second = 0;
    float weight = 0;
};

Tap tap(float at, int extent) {
    // min and max rather than clamp: they compile without branches.
    const float clamped = std::min(std::max(at, 0.0f), static_cast<float>(extent - 1));
    const int first = static_cast<int>(clamped);
    return {first, std::min(first + 1, extent - 1), clamped - static_cast<float>(first)};
}

// The prepared backdrop's pixels, RGBA.
struct Pixels {
    const uchar* bits = nullptr;
    qsizetype stride = 0;
    int width = 0;
    int height = 0;

    // One channel, 0...255, between the four pixels of two taps.
    float at(const Tap& x, const Tap& y, int channel) const {
        const uchar* top = bits + y.first * stride;
        const uchar* bottom = bits + y.second * stride;
        const int a = x.first * 4 + channel;
        const int b = x.second * 4 + channel;
        const float upper = top[a] + (top[b] - top[a]) * x.weight;
        const float lower = bottom[a] + (bottom[b] - bottom[a]) * x.weight;
        return upper + (lower - upper) * y.weight;
    }
};

// Through int: a float converts to it in one instruction, to unsigned in several.
quint32 toByte(float value) {
    return static_cast<quint32>(static_cast<int>(std::min(std::max(value * 255.0f, 0.0f), 255.0f)));
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
    const bool hasBackdrop = !prepared.isNull();
    const Pixels lens{prepared.constBits(), prepared.bytesPerLine(), extended.width(),
                      extended.height()};

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
    const float mix = static_cast<float>(params.lightGlass ? f * 0.14 + 0.03 : f * 0.2 + 0.07);
    const float tint = params.lightGlass ? 1.0f : 0.0f;
    const double focusBoost = params.focused ? 0.05 : 0.0;
    const float baseAlpha = hasBackdrop ? 1.0f : mix * 0.9f + 0.1f;
    const float shadeAlpha = hasBackdrop ? 0.0f : 0.5f;
    // A sample point p of the lens, in points, lies at s × p + margin − 0.5 in the prepared pixels;
    // a displacement in points is s times as many pixels.
    const auto toPixels = [&](double p) { return static_cast<float>(s * p + margin - 0.5); };
    const float displacement = static_cast<float>(s * lensShape.amplitude);

    // What depends on the column alone, worked out once rather than per pixel. Away from the
    // corners the distance to the edge is that of the nearer straight edge, so a pixel takes the
    // edge terms of its column or of its row, whichever is nearer.
    std::vector<double> qx(pw);
    std::vector<float> columnD(pw);
    std::vector<float> columnCoverage(pw);
    std::vector<float> columnStrength(pw);
    std::vector<float> columnBand(pw);
    std::vector<float> wx(pw);
    std::vector<float> baseX(pw); // the magnified, unbent sample
    std::vector<Tap> baseTap(pw);
    int cornerColumns = 0; // at each end, outside the straight edges' reach
    for (int i = 0; i < pw; ++i) {
        const double dx = (i + 0.5) / s - hw;
        qx[i] = r - hw + std::abs(dx);
        cornerColumns += i < (pw + 1) / 2 && qx[i] > 0;
        const Edge e = edge(qx[i] - r, s, bevel);
        columnD[i] = static_cast<float>(qx[i] - r);
        columnCoverage[i] = e.coverage;
        columnStrength[i] = e.strength;
        columnBand[i] = e.band;
        wx[i] = static_cast<float>(axisWeight(hw, dx));
        baseX[i] = toPixels(hw + dx * kMagnification);
        baseTap[i] = tap(baseX[i], extended.width());
    }

    // One row's terms, pixel by pixel, in passes the compiler can run several pixels at a time.
    std::vector<float> coverage(pw);
    std::vector<float> strength(pw);
    std::vector<float> band(pw);
    std::vector<float> nx(pw);
    std::vector<float> ny(pw);
    std::vector<float> rimLight(pw);
    // The colours behind each pixel, 0...255; the tint throughout without a backdrop.
    const float fill = hasBackdrop ? 0.0f : tint * 255.0f;
    std::vector<float> colour[3] = {std::vector<float>(pw, fill), std::vector<float>(pw, fill),
                                    std::vector<float>(pw, fill)};
    // The two rows under the flat middle's samples, mixed down once for the whole row.
    std::vector<float> mixedDown(hasBackdrop ? static_cast<size_t>(extended.width()) * 4 : 0);

    for (int j = 0; j < ph; ++j) {
        const double y = (j + 0.5) / s;
        const double dy = y - hh;
        const double qy = r - hh + std::abs(dy);
        const double rowD = qy - r;
        const Edge rowEdge = edge(rowD, s, bevel);
        const float wy = static_cast<float>(axisWeight(hh, dy));
        const float sheen = static_cast<float>(focusBoost + (1 - y / H) * 0.045);
        const float baseY = toPixels(hh + dy * kMagnification);

        const float d = static_cast<float>(rowD);
        for (int i = 0; i < pw; ++i) {
            const bool column = columnD[i] >= d;
            coverage[i] = column ? columnCoverage[i] : rowEdge.coverage;
            strength[i] = column ? columnStrength[i] : rowEdge.strength;
            band[i] = column ? columnBand[i] : rowEdge.band;
        }
        // Only the corners are outside both straight edges.
        if (qy > 0) {
            for (int k = 0; k < cornerColumns; ++k) {
                for (const int i : {k, pw - 1 - k}) {
                    const Edge e = edge(std::sqrt(qx[i] * qx[i] + qy * qy) - r, s, bevel);
                    coverage[i] = e.coverage;
                    strength[i] = e.strength;
                    band[i] = e.band;
                }
            }
        }
        // The shape is convex: the covered pixels of a row are one run.
        int begin = 0;
        int end = pw;
        while (begin < end && !(coverage[begin] > 0)) {
            ++begin;
        }
        while (end > begin && !(coverage[end - 1] > 0)) {
            --end;
        }
        if (begin == end) {
            continue;
        }

        // The normal: the nearer edge dominates steeply, so it turns smoothly round the corners.
        // Far from every edge of a huge tile the weights vanish in floats: the normal is then
        // nothing rather than not a number, and there it bends and lights nothing anyway.
        for (int i = begin; i < end; ++i) {
            const float norm = 1.0f / std::sqrt(std::max(wx[i] * wx[i] + wy * wy, kTiny));
            nx[i] = wx[i] * norm;
            ny[i] = wy * norm;
        }
        // The rim light's band is a run at each end of the row, or all of it.
        std::fill(rimLight.begin() + begin, rimLight.begin() + end, 0.0f);
        const auto light = [&](int i) {
            const float dot = nx[i] * kLightX + ny[i] * kLightY;
            // The far side glows less.
            rimLight[i] =
                band[i] * (std::pow(std::abs(dot), 2.2f) * 0.7f + 0.3f) * (dot <= 0 ? 0.75f : 1.0f);
        };
        int left = begin;
        for (; left < end && band[left] > 0; ++left) {
            light(left);
        }
        for (int right = end - 1; right >= left && band[right] > 0; --right) {
            light(right);
        }

        if (hasBackdrop) {
            const Tap rowTap = tap(baseY, extended.height());
            const uchar* top = lens.bits + rowTap.first * lens.stride;
            const uchar* bottom = lens.bits + rowTap.second * lens.stride;
            for (size_t k = 0; k < mixedDown.size(); ++k) {
                mixedDown[k] = top[k] + (bottom[k] - top[k]) * rowTap.weight;
            }
            for (int i = begin; i < end; ++i) {
                if (strength[i] == 0) {
                    // The flat middle: no bending, so one sample for all three colours.
                    const Tap& x = baseTap[i];
                    for (int c = 0; c < 3; ++c) {
                        const float a = mixedDown[x.first * 4 + c];
                        const float b = mixedDown[x.second * 4 + c];
                        colour[c][i] = a + (b - a) * x.weight;
                    }
                    continue;
                }
                // The displacement points inwards; each colour bends by its own amount.
                const float off = displacement * strength[i];
                for (int c = 0; c < 3; ++c) {
                    const float k = off * kDispersion[c];
                    colour[c][i] = lens.at(tap(baseX[i] - nx[i] * k, lens.width),
                                           tap(baseY - ny[i] * k, lens.height), c);
                }
            }
        }

        // Branch-free, so that several pixels go at once. Without a backdrop the colours are the
        // tint, and the shade deepens the alpha instead.
        auto* line = reinterpret_cast<quint32*>(output.scanLine(j));
        for (int i = begin; i < end; ++i) {
            const float dot = nx[i] * kLightX + ny[i] * kLightY;
            const float lit = std::max(dot, 0.0f);
            const float shade = std::max(-dot, 0.0f) * strength[i] * 0.24f;
            const float alpha = std::min(shade * shadeAlpha + baseAlpha, 1.0f);
            const float highlight = std::min(sheen + lit * strength[i] * 0.42f + rimLight[i], 1.0f);
            const float inverse = 1 - highlight;
            const float cover = std::max(coverage[i], 0.0f);
            const float lightPart = cover * highlight;
            const float colourPart = cover * (1 - shade) * alpha * inverse;
            const auto channel = [&](const std::vector<float>& values) {
                const float value = values[i] * (1 / 255.0f);
                return toByte(lightPart + colourPart * (value + mix * (tint - value)));
            };
            const quint32 packed = channel(colour[0]) | channel(colour[1]) << 8 |
                                   channel(colour[2]) << 16 |
                                   toByte(lightPart + cover * alpha * inverse) << 24;
            line[i] = qToLittleEndian(packed);
        }
    }
    output.setDevicePixelRatio(s);
    return output;
}

} // namespace tw
