#include "faces/BoxBlur.h"

#include <algorithm>
#include <array>
#include <vector>

namespace tw::BoxBlur {

void pass(QImage& image, int radius, Qt::Orientation orientation, Channels channels) {
    const int lines = orientation == Qt::Horizontal ? image.height() : image.width();
    const int length = orientation == Qt::Horizontal ? image.width() : image.height();
    const int window = 2 * radius + 1;
    const bool colour = channels == Channels::colour;
    std::vector<QRgb> in(static_cast<size_t>(length));
    // The pixels once, not a scan line per pixel: asking for one checks whether to detach.
    uchar* const bits = image.bits();
    const qsizetype stride = image.bytesPerLine();
    for (int line = 0; line < lines; ++line) {
        auto pixel = [&](int i) -> QRgb& {
            const int x = orientation == Qt::Horizontal ? i : line;
            const int y = orientation == Qt::Horizontal ? line : i;
            return reinterpret_cast<QRgb*>(bits + y * stride)[x];
        };
        for (int i = 0; i < length; ++i) {
            in[static_cast<size_t>(i)] = pixel(i);
        }
        auto at = [&](int i) -> QRgb {
            if (i >= 0 && i < length) {
                return in[static_cast<size_t>(i)];
            }
            return colour ? in[static_cast<size_t>(std::clamp(i, 0, length - 1))] : 0;
        };
        std::array<int, 4> sum{};
        auto add = [&sum](QRgb p, int sign) {
            sum[0] += sign * qRed(p);
            sum[1] += sign * qGreen(p);
            sum[2] += sign * qBlue(p);
            sum[3] += sign * qAlpha(p);
        };
        for (int i = -radius; i <= radius; ++i) {
            add(at(i), 1);
        }
        for (int i = 0; i < length; ++i) {
            pixel(i) = colour ? qRgb(sum[0] / window, sum[1] / window, sum[2] / window)
                              : qRgba(0, 0, 0, sum[3] / window);
            add(at(i - radius), -1);
            add(at(i + radius + 1), 1);
        }
    }
}

} // namespace tw::BoxBlur
