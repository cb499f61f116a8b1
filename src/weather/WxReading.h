// What a weather tile draws: made from a live forecast or invented for demo and manual use, and
// the pure decisions the tile takes over it.
#pragma once

#include "weather/WxAirQuality.h"
#include "weather/WxCondition.h"
#include "weather/WxLive.h"

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct WxHourEntry {
    // Its position in the list.
    int id = 0;
    QString hour;
    QString symbol;
    int temp = 0;
    bool operator==(const WxHourEntry&) const = default;
};

struct WxDayEntry {
    int id = 0;
    // The short weekday in the application's language.
    QString day;
    QString symbol;
    int lo = 0;
    int hi = 0;
    bool operator==(const WxDayEntry&) const = default;
};

struct WxReading {
    int temp = 0;
    int feels = 0;
    int hi = 0;
    int lo = 0;
    std::optional<QDateTime> sunrise;
    std::optional<QDateTime> sunset;
    QList<WxHourEntry> hourly;
    QList<WxDayEntry> daily;
    std::optional<WxAirQuality> air;
    bool operator==(const WxReading&) const = default;
};

// The weather tile follows the forecast or shows a hand-picked condition.
enum class WxMode { automatic, manual };

WxReading reading(const WxLive& live);
// The same numbers with every entry's symbol that of `condition`.
WxReading reskin(WxReading reading, WxCondition condition);
// value × 9 / 5 + 32, rounded half away from zero.
int fahrenheit(int celsius);
// Every temperature of `reading` converted, at the end, from its rounded Celsius.
WxReading inFahrenheit(WxReading reading);
// Before sunrise or from sunset on; false in manual mode, without live data, or without both times.
bool isNight(const std::optional<WxReading>& live, const QDateTime& now, WxMode mode);

} // namespace tw
