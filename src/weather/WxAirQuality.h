// The air where the forecast is: the European index and the fine and coarse particles.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tw {

struct WxAirQuality {
    enum class Band { good, fair, moderate, poor, veryPoor, extreme };

    // The European AQI.
    int index = 0;
    // µg/m³.
    double pm25 = 0;
    double pm10 = 0;

    Band band() const;
    // The localized title of `band`.
    static QString title(Band band);

    // The air-quality answer's `current` block: `european_aqi`, `pm2_5`, `pm10`. Nullopt when
    // the answer is no JSON object or has no usable index; a missing particle figure reads 0.
    static std::optional<WxAirQuality> fromAnswer(const QByteArray& json);

    bool operator==(const WxAirQuality&) const = default;
};

} // namespace tw
