// What one forecast answer becomes: the place's weather now, the next hours and the next days.
// Every temperature is Celsius, rounded; the tile converts.
#pragma once

#include "weather/WxAirQuality.h"
#include "weather/WxCondition.h"

#include <QDate>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct WxLiveHour {
    // "Now" for the first hour, else the hour "HH" of the place.
    QString label;
    WxCondition condition = WxCondition::clouds;
    int temp = 0;
    bool operator==(const WxLiveHour&) const = default;
};

struct WxLiveDay {
    // The place's calendar day.
    QDate date;
    WxCondition condition = WxCondition::clouds;
    int lo = 0;
    int hi = 0;
    bool operator==(const WxLiveDay&) const = default;
};

struct WxLive {
    QString city;
    int temp = 0;
    int feels = 0;
    int hi = 0;
    int lo = 0;
    WxCondition condition = WxCondition::clouds;
    // The current WMO code the condition came from: the scene tells fog and thunder by it.
    std::optional<int> code;
    bool isDay = true;
    std::optional<QDateTime> sunrise;
    std::optional<QDateTime> sunset;
    // At most 12, the current hour first.
    QList<WxLiveHour> hourly;
    // At most 7, tomorrow first.
    QList<WxLiveDay> daily;
    std::optional<WxAirQuality> air;
    std::optional<QString> countryCode;
    // The place came from the internet address.
    bool approximate = false;
    bool operator==(const WxLive&) const = default;
};

} // namespace tw
