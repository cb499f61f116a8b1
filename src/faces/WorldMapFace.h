// The world as dots with the night on it: the shade of the night side softened by the twilight,
// the point under the sun, the lights of cities in the dark, and where the sun rises and sets.
#pragma once

#include "faces/LandMask.h"
#include "faces/WidgetFace.h"

#include <QPolygonF>

namespace tw {

class WorldMapFace final : public WidgetFace {
public:
    WorldMapFace();

    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;

    // Where the sun stands at its zenith, in degrees (north and east positive).
    struct SunPoint {
        double latitude = 0;
        double longitude = 0;
    };

    // The edge of the part of the Earth where the sun stands below `altitude` degrees (the night
    // for 0, deeper twilights below), as (longitude, latitude) in degrees, longitudes running on
    // past ±180 without a jump. An edge around a pole is closed along that pole's latitude.
    static QPolygonF nightOutline(SunPoint sun, double altitude);

private:
    LandMask m_land;
};

} // namespace tw
