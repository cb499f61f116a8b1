#include "weather/FixedLocation.h"

namespace tw {

namespace {

const QString locationKey = QStringLiteral("location");
const QString customValue = QStringLiteral("custom");
const QString nameKey = QStringLiteral("locName");
const QString latitudeKey = QStringLiteral("locLat");
const QString longitudeKey = QStringLiteral("locLon");
const QString countryKey = QStringLiteral("locCountry");

std::optional<double> coordinate(const WidgetSettings& settings, const QString& key, double limit) {
    bool ok = false;
    const double value = settings.value(key).toDouble(&ok);
    if (!ok || !(value >= -limit && value <= limit)) {
        return std::nullopt;
    }
    return value;
}

} // namespace

QString FixedLocation::key() const {
    return QString::asprintf("%.4f,%.4f", latitude, longitude);
}

std::optional<FixedLocation> FixedLocation::fromSettings(const WidgetSettings& settings) {
    if (settings.value(locationKey) != customValue) {
        return std::nullopt;
    }
    const auto latitude = coordinate(settings, latitudeKey, 90);
    const auto longitude = coordinate(settings, longitudeKey, 180);
    if (!latitude || !longitude) {
        return std::nullopt;
    }
    FixedLocation place{.latitude = *latitude,
                        .longitude = *longitude,
                        .name = settings.value(nameKey).trimmed(),
                        .countryCode = {}};
    const QString country = settings.value(countryKey).trimmed();
    if (!country.isEmpty()) {
        place.countryCode = country;
    }
    return place;
}

WidgetSettings FixedLocation::writtenTo(WidgetSettings settings) const {
    settings.insert(locationKey, customValue);
    settings.insert(nameKey, name);
    settings.insert(latitudeKey, QString::number(latitude, 'f', 6));
    settings.insert(longitudeKey, QString::number(longitude, 'f', 6));
    if (countryCode) {
        settings.insert(countryKey, *countryCode);
    } else {
        settings.remove(countryKey);
    }
    return settings;
}

} // namespace tw
