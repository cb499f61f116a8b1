// What a weather service publishes for its place, and what its tiles draw from.
#pragma once

#include "weather/WxLive.h"

#include <QString>

#include <optional>

namespace tw {

struct WeatherState {
    enum class Kind { ready, error, idle, loading, permissionDenied, noLocation };

    Kind kind = Kind::idle;
    // The forecast of `ready`.
    std::optional<WxLive> live;
    // The person's words for `error`.
    QString message;

    static WeatherState ready(WxLive live) { return {Kind::ready, std::move(live), {}}; }
    static WeatherState error(QString message) { return {Kind::error, {}, std::move(message)}; }

    bool operator==(const WeatherState&) const = default;
};

// One place as the tiles see it: the state, the last good forecast that outlives every failure,
// and where the forecast was for (degrees), which the sky faces use for rise and set.
struct WeatherPlace {
    WeatherState state;
    std::optional<WxLive> lastGood;
    std::optional<double> latitude;
    std::optional<double> longitude;

    bool operator==(const WeatherPlace&) const = default;
};

} // namespace tw
