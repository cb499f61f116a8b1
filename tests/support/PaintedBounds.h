// Where a picture was painted at all: the bounding box, in its pixels, of every pixel that is not
// fully transparent.
#pragma once

#include <QImage>
#include <QRect>

namespace tw::test {

inline QRect paintedBounds(const QImage& image) {
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(line[x]) != 0) {
                bounds |= QRect(x, y, 1, 1);
            }
        }
    }
    return bounds;
}

} // namespace tw::test
