// A city a tile is fixed to instead of where the machine is, as kept in the tile's settings.
#pragma once

#include "model/WidgetInstance.h"

#include <QString>

#include <optional>

namespace tw {

struct FixedLocation {
    double latitude = 0;
    double longitude = 0;
    QString name;
    std::optional<QString> countryCode;

    // "%.4f,%.4f" of latitude and longitude: tiles whose cities agree to four decimals share
    // one service.
    QString key() const;

    // The settings "location" = "custom" with "locName", "locLat", "locLon" and "locCountry";
    // nullopt for the current location, and for coordinates that are missing or off the globe.
    static std::optional<FixedLocation> fromSettings(const WidgetSettings& settings);
    // `settings` with this city written in.
    WidgetSettings writtenTo(WidgetSettings settings) const;

    bool operator==(const FixedLocation&) const = default;
};

} // namespace tw
