#include "faces/WeatherNotice.h"

#include "text/L.h"

namespace tw {

const WxLive* WeatherNotice::forecast(const WeatherPlace* place) {
    if (place == nullptr) {
        return nullptr;
    }
    if (place->state.kind == WeatherState::Kind::ready && place->state.live) {
        return &*place->state.live;
    }
    return place->lastGood ? &*place->lastGood : nullptr;
}

WeatherNotice WeatherNotice::of(const WeatherPlace* place) {
    using Kind = WeatherState::Kind;
    switch (place == nullptr ? Kind::loading : place->state.kind) {
    case Kind::permissionDenied:
        return {
            QStringLiteral("location.slash"),
            L("weather.state.denied", QStringLiteral("Location Off")),
            L("weather.state.denied.none",
              QStringLiteral("Location is off. Allow it in System Settings or choose a city."))};
    case Kind::noLocation:
        return {
            QStringLiteral("location.slash"),
            L("weather.state.nolocation", QStringLiteral("Location not found")),
            L("weather.state.nolocation.sub",
              QStringLiteral("Your location is unknown. Choose a city in the widget settings."))};
    case Kind::error:
    case Kind::ready: // ready without a forecast says as much as a failure
        return {QStringLiteral("exclamationmark.triangle"),
                L("weather.state.failed", QStringLiteral("Weather Unavailable")),
                place->state.message.isEmpty()
                    ? L("weather.err.unavailable", QStringLiteral("Weather data unavailable"))
                    : place->state.message};
    case Kind::idle:
    case Kind::loading:
        break;
    }
    return {QStringLiteral("location"),
            L("weather.state.loading", QStringLiteral("Loading Weather")),
            L("weather.state.loading.sub", QStringLiteral("Finding your location\u2026"))};
}

} // namespace tw
