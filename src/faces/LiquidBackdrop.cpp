#include "faces/LiquidBackdrop.h"

#include <QSysInfo>

#include <algorithm>
#include <array>
#include <cmath>

namespace tw {

namespace {

// Rec. 709 luma weights, as a colour-controls saturation mixes them.
constexpr float kLumaR = 0.2125f;
constexpr float kLumaG = 0.7154f;
constexpr float kLumaB = 0.0721f;

struct Taps {
    std::vector<int> first;
    std::vector<int> second;
    std::vector<float> weight;
};

// Bilinear sample positions of `count` output pixels spread over [start, start + length) of an
// axis with `extent` pixels, clamped to its edge pixels.
Taps taps(double start, double length, int count, int extent) {
    Taps t{std::vector<int>(count), std::vector<int>(count), std::vector<float>(count)};
    const double step = length / count;
    for (int i = 0; i < count; ++i) {
        const double at = std::clamp(start + (i + 0.5) * step - 0.5, 0.0, extent - 1.0);
        const int low = static_cast<int>(at);
        t.first[i] = low;
        t.second[i] = std::min(low + 1, extent - 1);
        t.weight[i] = static_cast<float>(at - low);
    }
    return t;
}

// Normalised Gaussian weights reaching three sigmas out; a single tap when there is no blur.
std::vector<float> kernel(double sigma) {
    if (!(sigma > 0)) {
        return {1.0f};
    }
    const int radius = static_cast<int>(std::ceil(sigma * 3.0));
    std::vector<float> weights(2 * radius + 1);
    double sum = 0;
    for (int k = -radius; k <= radius; ++k) {
        const double w = std::exp(-(k * k) / (2.0 * sigma * sigma));
        weights[k + radius] = static_cast<float>(w);
        sum += w;
    }
    for (float& w : weights) {
        w = static_cast<float>(static_cast<double>(w) / sum);
    }
    return weights;
}

} // namespace

QImage LiquidBackdrop::prepare(const QImage& backdrop, const QRectF& rect, QSize extended,
                               double sigma, double saturation) {
    if (backdrop.isNull() || extended.isEmpty() || !std::isfinite(rect.x()) ||
        !std::isfinite(rect.y()) || !std::isfinite(rect.width()) || !std::isfinite(rect.height()) ||
        !(rect.width() > 0) || !(rect.height() > 0)) {
        return {};
    }
    QImage source = backdrop;
    std::array<int, 4> channel{0, 1, 2, 3};
    if (source.format() == QImage::Format_ARGB32_Premultiplied &&
        QSysInfo::ByteOrder == QSysInfo::LittleEndian) {
        channel = {2, 1, 0, 3};
    } else if (source.format() != QImage::Format_RGBA8888_Premultiplied) {
        source = backdrop.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        if (source.isNull()) {
            return {};
        }
    }
    QImage prepared(extended, QImage::Format_RGBA8888_Premultiplied);
    if (prepared.isNull()) {
        return {};
    }
    const int ew = extended.width();
    const int eh = extended.height();
    const Taps xs = taps(rect.x(), rect.width(), ew, source.width());
    const Taps ys = taps(rect.y(), rect.height(), eh, source.height());
    const std::vector<float> weights = kernel(sigma);
    const int radius = static_cast<int>(weights.size() / 2);
    const size_t rowFloats = static_cast<size_t>(ew) * 4;

    // Each row is scaled into a padded line whose ends repeat its edge pixels and blurred across
    // into a ring of the rows the blur down needs; the blur down and the saturation then write the
    // image row by row. Premultiplied floats keep translucent edges from darkening and the blur
    // from banding; the ring keeps the working set small whatever the picture's height.
    const int ringRows = 2 * radius + 1;
    std::vector<float> ring(rowFloats * ringRows);
    std::vector<float> padded((ew + 2 * radius) * 4);
    // The source columns the taps reach, mixed down first: the mix between two rows runs over
    // contiguous memory, and the mix across then reads floats of whole pixels.
    const int firstColumn = xs.first.front();
    const int lastColumn = xs.second.back();
    std::vector<float> mixedDown((lastColumn - firstColumn + 1) * 4);
    const auto blurAcross = [&](int y) {
        const uchar* top = source.constScanLine(ys.first[y]) + firstColumn * 4;
        const uchar* bottom = source.constScanLine(ys.second[y]) + firstColumn * 4;
        const float fy = ys.weight[y];
        for (size_t i = 0; i < mixedDown.size(); ++i) {
            mixedDown[i] = top[i] + (bottom[i] - top[i]) * fy;
        }
        float* out = padded.data() + radius * 4;
        for (int x = 0; x < ew; ++x, out += 4) {
            const float* a = mixedDown.data() + (xs.first[x] - firstColumn) * 4;
            const float* b = mixedDown.data() + (xs.second[x] - firstColumn) * 4;
            const float fx = xs.weight[x];
            for (int c = 0; c < 4; ++c) {
                out[c] = a[c] + (b[c] - a[c]) * fx;
            }
        }
        for (int x = 0; x < radius; ++x) {
            std::copy_n(padded.begin() + radius * 4, 4, padded.begin() + x * 4);
            std::copy_n(padded.begin() + (radius + ew - 1) * 4, 4,
                        padded.begin() + (radius + ew + x) * 4);
        }
        // The kernel is symmetric: each weight takes the pair of pixels at its distance at once.
        float* row = ring.data() + (y % ringRows) * rowFloats;
        const float* centre = padded.data() + radius * 4;
        const float middle = weights[radius];
        for (size_t i = 0; i < rowFloats; ++i) {
            row[i] = middle * centre[i];
        }
        for (int k = 1; k <= radius; ++k) {
            const float w = weights[radius + k];
            const float* before = centre - k * 4;
            const float* after = centre + k * 4;
            for (size_t i = 0; i < rowFloats; ++i) {
                row[i] += w * (before[i] + after[i]);
            }
        }
    };

    const float amount = static_cast<float>(saturation);
    std::vector<float> down(rowFloats);
    int across = 0; // rows blurred across so far
    for (int y = 0; y < eh; ++y) {
        for (; across <= std::min(y + radius, eh - 1); ++across) {
            blurAcross(across);
        }
        const auto ringRow = [&](int at) {
            return ring.data() + (std::clamp(at, 0, eh - 1) % ringRows) * rowFloats;
        };
        const float* centre = ringRow(y);
        const float middle = weights[radius];
        for (size_t i = 0; i < rowFloats; ++i) {
            down[i] = middle * centre[i];
        }
        for (int k = 1; k <= radius; ++k) {
            const float w = weights[radius + k];
            const float* above = ringRow(y - k);
            const float* below = ringRow(y + k);
            for (size_t i = 0; i < rowFloats; ++i) {
                down[i] += w * (above[i] + below[i]);
            }
        }
        uchar* line = prepared.scanLine(y);
        const float* in = down.data();
        for (int x = 0; x < ew; ++x, in += 4, line += 4) {
            // The source's byte order is kept up to here; this is where it becomes RGBA.
            const float rgb[3] = {in[channel[0]], in[channel[1]], in[channel[2]]};
            const float alpha = std::clamp(in[channel[3]], 0.0f, 255.0f);
            // Premultiplied values mix the same way as straight ones; only the ceiling is alpha.
            const float luma = kLumaR * rgb[0] + kLumaG * rgb[1] + kLumaB * rgb[2];
            for (int c = 0; c < 3; ++c) {
                const float value = std::clamp(luma + amount * (rgb[c] - luma), 0.0f, alpha);
                line[c] = static_cast<uchar>(value + 0.5f);
            }
            line[3] = static_cast<uchar>(alpha + 0.5f);
        }
    }
    return prepared;
}

} // namespace tw
