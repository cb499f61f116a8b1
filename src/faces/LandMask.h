// Where the land is, one bit a degree: 360 columns from 180° west eastwards, 180 rows from the
// north pole down. Made once from Natural Earth by scripts/make-land-mask.
#pragma once

#include <QImage>

namespace tw {

class LandMask {
public:
    static constexpr int columns = 360;
    static constexpr int rows = 180;

    // The mask built into the program; an empty one (all sea) if the picture cannot be read.
    static LandMask builtIn();
    explicit LandMask(const QImage& bits);

    // The share of land in the box of longitudes west...east and latitudes south...north
    // (degrees), counted in whole cells, 0...1.
    double share(double west, double east, double south, double north) const;

private:
    QImage m_bits;
};

} // namespace tw
