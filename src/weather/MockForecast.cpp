#include "weather/MockForecast.h"

#include "text/L.h"

#include <QTime>
#include <QTimeZone>

#include <array>
#include <cmath>
#include <numbers>

namespace tw {

namespace {

struct Look {
    WxCondition condition;
    int code;
    int mean;  // the day's middle temperature
    int swing; // half the day's range
    int feelsOffset;
};

Look lookOf(WxScene scene) {
    switch (scene) {
    case WxScene::clear:
        return {WxCondition::clear, 0, 19, 6, 1};
    case WxScene::clouds:
        return {WxCondition::clouds, 2, 13, 4, -1};
    case WxScene::rain:
        return {WxCondition::rain, 63, 10, 2, -3};
    case WxScene::snow:
        return {WxCondition::snow, 73, -2, 2, -6};
    case WxScene::fog:
        return {WxCondition::clouds, 45, 6, 2, -2};
    case WxScene::thunder:
        return {WxCondition::rain, 95, 23, 4, 2};
    }
    return {WxCondition::clouds, 3, 12, 4, 0};
}

// Warmest at three in the afternoon, coldest at three in the morning.
int tempAt(const Look& look, double hour) {
    const double phase = (hour - 15.0) / 24.0 * 2.0 * std::numbers::pi;
    return static_cast<int>(std::lround(look.mean + look.swing * std::cos(phase)));
}

} // namespace

WxLive mockLive(WxScene scene, const QDateTime& now) {
    const Look look = lookOf(scene);
    const double hourNow = now.time().hour() + now.time().minute() / 60.0;
    WxLive live;
    live.city = L("weather.demoCity", QStringLiteral("Zurich"));
    live.condition = look.condition;
    live.code = look.code;
    live.temp = tempAt(look, hourNow);
    live.feels = live.temp + look.feelsOffset;
    live.hi = look.mean + look.swing;
    live.lo = look.mean - look.swing;
    live.sunrise = QDateTime(now.date(), QTime(7, 12), now.timeZone());
    live.sunset = QDateTime(now.date(), QTime(16, 48), now.timeZone());
    live.isDay = now >= *live.sunrise && now < *live.sunset;
    live.air = WxAirQuality{.index = 24, .pm25 = 7.8, .pm10 = 13.5};
    for (int i = 0; i < 12; ++i) {
        const int hour = (now.time().hour() + i) % 24;
        live.hourly.append(
            {i == 0 ? QStringLiteral("Now")
                    : QStringLiteral("%1").arg(hour, 2, 10, QLatin1Char('0')),
             i == 0 ? look.condition : (i % 5 == 4 ? WxCondition::clouds : look.condition),
             i == 0 ? live.temp : tempAt(look, hour)});
    }
    // A week that drifts a few degrees and turns once or twice.
    constexpr std::array drift{1, 3, 2, -1, -3, 0, 2};
    constexpr std::array turn{false, false, true, false, true, false, false};
    for (int i = 0; i < 7; ++i) {
        const auto at = static_cast<size_t>(i);
        live.daily.append({now.date().addDays(i + 1),
                           turn.at(at) ? WxCondition::clouds : look.condition,
                           live.lo + drift.at(at) - (i % 3 == 2 ? 1 : 0), live.hi + drift.at(at)});
    }
    return live;
}

WeatherPlace mockPlace(WxScene scene, const QDateTime& now) {
    WxLive live = mockLive(scene, now);
    return {.state = WeatherState::ready(live),
            .lastGood = live,
            .latitude = 47.3769,
            .longitude = 8.5417};
}

} // namespace tw
