// A made-up forecast that looks real: what the manual mode, the gallery and pictures show.
#pragma once

#include "weather/WeatherState.h"
#include "weather/WxLive.h"
#include "weather/WxScene.h"

#include <QDateTime>

namespace tw {

// Plausible figures for `scene` around `now` (its day's sunrise and sunset, an hourly curve that
// peaks in the afternoon, a week that changes its mind now and then), in `now`'s zone.
// The air is fair.
WxLive mockLive(WxScene scene, const QDateTime& now);
// That forecast ready for the made-up city, with its coordinates.
WeatherPlace mockPlace(WxScene scene, const QDateTime& now);

} // namespace tw
