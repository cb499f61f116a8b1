// Air quality where the weather is: the European index with its band on a colour scale, and the
// fine and coarse particles.
#pragma once

#include "faces/WidgetFace.h"
#include "weather/WxAirQuality.h"

#include <QColor>

namespace tw {

class AirQualityFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    // The service fetches the air with the forecast.
    bool showsWeather(const WidgetSettings& settings) const override;

    // Where `index` stands on the colour scale, 0...1: each band below 100 takes a sixth, the
    // extreme band the last sixth up to 120.
    static double scalePosition(int index);
    // The band's colour on the European scale.
    static QColor bandColor(WxAirQuality::Band band);
    // A particle figure in µg/m³, without the unit: one decimal below ten, "—" for none.
    static QString particles(double microgramsPerCubicMetre);
};

} // namespace tw
