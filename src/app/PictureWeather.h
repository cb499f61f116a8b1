// The weather for a picture drawn without the host: a forecast that looks real, or a state.
#pragma once

#include "model/WidgetInstance.h"
#include "weather/WeatherBoard.h"

#include <QDateTime>

namespace tw {

// A board whose place (the current one, or the settings' fixed city) is ready with a made-up
// forecast for `now`, its air and its coordinates. The settings pick what it shows: "condition"
// any scene ("clear", "clouds", "rain", "snow", "fog", "thunder"; clouds otherwise), "aqi" the
// air's European index, "state" one of "loading", "denied", "nolocation", "failed" or "stale"
// (failed over an older forecast) instead of the forecast, "approximate" (the forecast for a
// place found by the internet address) or "noair" (a forecast without air).
WeatherBoard pictureWeather(const WidgetSettings& settings, const QDateTime& now);

} // namespace tw
