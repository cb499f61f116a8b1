// What a face of the weather draws of its place: the forecast, or the words of a state that has
// none to show.
#pragma once

#include "weather/WeatherState.h"

#include <QString>

namespace tw {

struct WeatherNotice {
    QString symbol;
    QString title;
    QString detail;

    // The forecast to draw: the current one, else the last good one through a failure or a
    // reload; null when there is none.
    static const WxLive* forecast(const WeatherPlace* place);
    // The words for a place with no forecast to draw; an unknown place is still loading.
    static WeatherNotice of(const WeatherPlace* place);

    bool operator==(const WeatherNotice&) const = default;
};

} // namespace tw
