#include "weather/WxAirQuality.h"

#include "text/L.h"
#include "weather/WireValues.h"

#include <QJsonObject>

#include <array>

namespace tw {

WxAirQuality::Band WxAirQuality::band() const {
    if (index < 20) {
        return Band::good;
    }
    if (index < 40) {
        return Band::fair;
    }
    if (index < 60) {
        return Band::moderate;
    }
    if (index < 80) {
        return Band::poor;
    }
    if (index < 100) {
        return Band::veryPoor;
    }
    return Band::extreme;
}

QString WxAirQuality::title(Band band) {
    struct Title {
        const char* key;
        const char* english;
    };
    static constexpr std::array<Title, 6> titles{{
        {"weather.aqi.good", "Good"},
        {"weather.aqi.fair", "Fair"},
        {"weather.aqi.moderate", "Moderate"},
        {"weather.aqi.poor", "Poor"},
        {"weather.aqi.veryPoor", "Very poor"},
        {"weather.aqi.extreme", "Extremely poor"},
    }};
    const Title& t = titles.at(static_cast<std::size_t>(band));
    return L(t.key, QString::fromUtf8(t.english));
}

std::optional<WxAirQuality> WxAirQuality::fromAnswer(const QByteArray& json) {
    const std::optional<QJsonObject> root = wire::rootObject(json);
    if (!root) {
        return std::nullopt;
    }
    const QJsonObject current = root->value(QLatin1String("current")).toObject();
    const std::optional<int> index = wire::integer(current.value(QLatin1String("european_aqi")));
    if (!index || *index < 0) {
        return std::nullopt;
    }
    return WxAirQuality{
        .index = *index,
        .pm25 = wire::real(current.value(QLatin1String("pm2_5"))).value_or(0),
        .pm10 = wire::real(current.value(QLatin1String("pm10"))).value_or(0),
    };
}

} // namespace tw
