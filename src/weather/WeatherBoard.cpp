#include "weather/WeatherBoard.h"

#include "weather/FixedLocation.h"

namespace tw {

QString WeatherBoard::placeKey(const WidgetSettings& settings) {
    const auto fixed = FixedLocation::fromSettings(settings);
    return fixed ? fixed->key() : currentPlace;
}

const WeatherPlace* WeatherBoard::place(const WidgetSettings& settings) const {
    const auto found = places.constFind(placeKey(settings));
    return found == places.cend() ? nullptr : &found.value();
}

} // namespace tw
