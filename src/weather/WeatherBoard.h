// The weather of every place a tile shows, as faces draw it. A plain value: the host keeps one up
// to date from its services, a picture fills its own.
#pragma once

#include "model/WidgetInstance.h"
#include "weather/WeatherState.h"

#include <QHash>
#include <QString>

namespace tw {

struct WeatherBoard {
    // By place key: `currentPlace` for where the machine is, `FixedLocation::key()` for a city.
    QHash<QString, WeatherPlace> places;

    static inline const QString currentPlace{};

    // The place key a tile with these settings shows.
    static QString placeKey(const WidgetSettings& settings);
    // What a tile with these settings shows; null when nothing is known of its place yet.
    const WeatherPlace* place(const WidgetSettings& settings) const;

    bool operator==(const WeatherBoard&) const = default;
};

} // namespace tw
