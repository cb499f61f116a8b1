#include "faces/LandMask.h"

#include <QLoggingCategory>

#include <algorithm>
#include <cmath>

Q_LOGGING_CATEGORY(lcLand, "WorldMap")

namespace tw {

namespace {

int column(double longitude) {
    return std::clamp(static_cast<int>(std::floor(longitude + 180)), 0, LandMask::columns - 1);
}

int row(double latitude) {
    return std::clamp(static_cast<int>(std::floor(90 - latitude)), 0, LandMask::rows - 1);
}

} // namespace

LandMask LandMask::builtIn() {
    const QImage bits(QStringLiteral(":/worldmap/land.pbm"));
    if (bits.size() != QSize(columns, rows)) {
        qCWarning(lcLand, "land mask unreadable; the map shows sea only");
    }
    return LandMask(bits);
}

LandMask::LandMask(const QImage& bits)
    : m_bits(bits.size() == QSize(columns, rows) ? bits.convertToFormat(QImage::Format_Grayscale8)
                                                 : QImage()) {}

double LandMask::share(double west, double east, double south, double north) const {
    if (m_bits.isNull()) {
        return 0;
    }
    const int left = column(west);
    // An edge on a cell's border belongs to the cell before it.
    const int right = std::max(left, column(std::nextafter(east, west)));
    const int top = row(north);
    const int bottom = std::max(top, row(std::nextafter(south, north)));
    int land = 0;
    for (int y = top; y <= bottom; ++y) {
        for (int x = left; x <= right; ++x) {
            // Land is black, as PBM's ones are.
            land += m_bits.constScanLine(y)[x] < 128 ? 1 : 0;
        }
    }
    return static_cast<double>(land) / ((right - left + 1) * (bottom - top + 1));
}

} // namespace tw
