#include "app/PictureWeather.h"

#include "text/L.h"
#include "weather/FixedLocation.h"
#include "weather/MockForecast.h"

namespace tw {

WeatherBoard pictureWeather(const WidgetSettings& settings, const QDateTime& now) {
    const WxScene scene =
        wxSceneFromRawValue(settings.value(QStringLiteral("condition"))).value_or(WxScene::clouds);
    WxLive live = mockLive(scene, now);
    if (const auto fixed = FixedLocation::fromSettings(settings)) {
        live.city = fixed->name;
        live.countryCode = fixed->countryCode;
    }
    const QString state = settings.value(QStringLiteral("state"));
    const QString offline = L("weather.err.offline", QStringLiteral("You\u2019re offline"));
    WeatherPlace place;
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
