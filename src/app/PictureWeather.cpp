#include "app/PictureWeather.h"

#include "text/L.h"
#include "weather/FixedLocation.h"
#include "weather/MockForecast.h"

#include <algorithm>

namespace tw {

WeatherBoard pictureWeather(const WidgetSettings& settings, const QDateTime& now) {
    const WxScene scene =
        wxSceneFromRawValue(settings.value(QStringLiteral("condition"))).value_or(WxScene::clouds);
    WxLive live = mockLive(scene, now);
    // Zurich's air on a fair day, and where it is, for the moon's rise and set.
    bool aqiRead = false;
    const int aqi = settings.value(QStringLiteral("aqi")).toInt(&aqiRead);
    live.air = WxAirQuality{.index = aqiRead ? std::max(aqi, 0) : 24, .pm25 = 7.8, .pm10 = 13.5};
    WeatherPlace place;
    place.latitude = 47.3769;
    place.longitude = 8.5417;
    if (const auto fixed = FixedLocation::fromSettings(settings)) {
        live.city = fixed->name;
        live.countryCode = fixed->countryCode;
        place.latitude = fixed->latitude;
        place.longitude = fixed->longitude;
    }
    const QString state = settings.value(QStringLiteral("state"));
    const QString offline = L("weather.err.offline", QStringLiteral("You\u2019re offline"));
    if (state == QLatin1String("noair")) {
        live.air.reset();
    }
    if (state == QLatin1String("loading")) {
        place.state.kind = WeatherState::Kind::loading;
    } else if (state == QLatin1String("denied")) {
        place.state.kind = WeatherState::Kind::permissionDenied;
    } else if (state == QLatin1String("nolocation")) {
        place.state.kind = WeatherState::Kind::noLocation;
    } else if (state == QLatin1String("failed")) {
        place.state = WeatherState::error(offline);
    } else if (state == QLatin1String("stale")) {
        place.state = WeatherState::error(offline);
        place.lastGood = live;
    } else {
        live.approximate = state == QLatin1String("approximate");
        place.state = WeatherState::ready(live);
        place.lastGood = live;
    }
    WeatherBoard board;
    board.places.insert(WeatherBoard::placeKey(settings), place);
    return board;
}

} // namespace tw
