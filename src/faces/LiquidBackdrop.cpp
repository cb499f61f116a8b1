#include "faces/LiquidBackdrop.h"

#include <QSysInfo>
#include <QtEndian>

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

// One blurred row made RGBA bytes and a little more vivid. `R` and `B` are where red and blue lie
// in the row's floats; fixed at compile time, so that several pixels go at once.
template <int R, int B>
void finishRow(const float* in, quint32* line, int count, float amount) {
    for (int x = 0; x < count; ++x, in += 4) {
        const float alpha = std::min(std::max(in[3], 0.0f), 255.0f);
        // Premultiplied values mix the same way as straight ones; only the ceiling is alpha.
        const float luma = kLumaR * in[R] + kLumaG * in[1] + kLumaB * in[B];
        const auto channel = [&](float value) {
            const float mixed = std::min(std::max(luma + amount * (value - luma), 0.0f), alpha);
            return static_cast<quint32>(static_cast<int>(mixed + 0.5f));
        };
        const quint32 packed = channel(in[R]) | channel(in[1]) << 8 | channel(in[B]) << 16 |
                               static_cast<quint32>(static_cast<int>(alpha + 0.5f)) << 24;
        line[x] = qToLittleEndian(packed);
    }
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
    // The source's byte order is kept until a row is finished.
    const bool swapped = source.format() == QImage::Format_ARGB32_Premultiplied &&
                         QSysInfo::ByteOrder == QSysInfo::LittleEndian;
    if (!swapped && source.format() != QImage::Format_RGBA8888_Premultiplied) {
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
            // Copied first, so that the four channels go at once: the row written can't alias.
            std::array<float, 4> first;
            std::array<float, 4> second;
            std::copy_n(a, 4, first.begin());
            std::copy_n(b, 4, second.begin());
            for (int c = 0; c < 4; ++c) {
                out[c] = first[c] + (second[c] - first[c]) * fx;
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
        auto* line = reinterpret_cast<quint32*>(prepared.scanLine(y));
        if (swapped) {
            finishRow<2, 0>(down.data(), line, ew, amount);
        } else {
            finishRow<0, 2>(down.data(), line, ew, amount);
        }
    }
    return prepared;
}

} // namespace tw
