// The weather: the temperature now as the hero over a sky of the condition, with the day's high
// and low, the next hours as a row or a curve and the next days as rows, at every size; or the
// honest state of its place (loading, location off, no location, failed) with a way to choose a
// city.
#pragma once

#include "faces/WidgetFace.h"
#include "weather/WeatherUnits.h"
#include "weather/WxLive.h"
#include "weather/WxReading.h"

#include <QList>
#include <QString>

#include <optional>

namespace tw {

class WeatherFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    bool showsWeather(const WidgetSettings& settings) const override;
    double sceneFps(const FaceContext& context) const override;
    bool opensSettingsOnClick(const FaceContext& context) const override;

    // What the tile shows of its place (the words of a state are `WeatherNotice`'s).
    struct Shown {
        enum class Kind { forecast, loading, denied, noLocation, failed };
        Kind kind = Kind::loading;
        std::optional<WxLive> live;
        // The forecast is the last good one, after a failure.
        bool stale = false;
    };
    static Shown shown(const FaceContext& context);

    // The "mode" setting: "manual" picks the condition by hand, anything else follows the forecast.
    static WxMode mode(const WidgetSettings& settings);
    // The "units" setting: "c", "f", or "auto" (and anything else): the place's country, else the
    // language and the system's region.
    static bool usesFahrenheit(const QString& units, const std::optional<QString>& country,
                               const QString& language, WeatherUnits::SystemRegion region);
    // Every how many hours a label fits under a curve of `hours` points across `width` points.
    static int labelStride(qsizetype hours, qreal width);
    // The positions of the highest and the lowest temperature (the first of equals); none for a
    // flat or empty list.
    static QList<qsizetype> extremes(const QList<WxHourEntry>& hours);
};

} // namespace tw
