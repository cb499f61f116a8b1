#include "weather/OMResponse.h"

#include "weather/WireValues.h"

#include <QJsonObject>

namespace tw {

std::optional<OMResponse> OMResponse::fromAnswer(const QByteArray& json) {
    const std::optional<QJsonObject> root = wire::rootObject(json);
    if (!root) {
        return std::nullopt;
    }
    const auto field = [](const QJsonObject& object, const char* key) {
        return object.value(QLatin1String(key));
    };
    const QJsonObject current = field(*root, "current").toObject();
    const QJsonObject hourly = field(*root, "hourly").toObject();
    const QJsonObject daily = field(*root, "daily").toObject();
    const auto optionalStrings = [&](const char* key) -> std::optional<QList<QString>> {
        if (!field(daily, key).isArray()) {
            return std::nullopt;
        }
        return wire::strings(field(daily, key), maxDays);
    };

    OMResponse response;
    response.utcOffsetSeconds = wire::integer(field(*root, "utc_offset_seconds"));
    response.temperature = wire::real(field(current, "temperature_2m"));
    response.apparent = wire::real(field(current, "apparent_temperature"));
    response.code = wire::integer(field(current, "weather_code"));
    response.isDay = wire::integer(field(current, "is_day"));
    response.hourly = {
        .time = wire::strings(field(hourly, "time"), maxHours),
        .temps = wire::reals(field(hourly, "temperature_2m"), maxHours),
        .codes = wire::integers(field(hourly, "weather_code"), maxHours),
    };
    response.daily = {
        .time = wire::strings(field(daily, "time"), maxDays),
        .tempMax = wire::reals(field(daily, "temperature_2m_max"), maxDays),
        .tempMin = wire::reals(field(daily, "temperature_2m_min"), maxDays),
        .codes = wire::integers(field(daily, "weather_code"), maxDays),
        .sunrise = optionalStrings("sunrise"),
        .sunset = optionalStrings("sunset"),
    };
    return response;
}

} // namespace tw
