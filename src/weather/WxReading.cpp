#include "weather/WxReading.h"

#include "settings/Formatters.h"

#include <QTime>

#include <cmath>

namespace tw {

namespace {

QString dayName(const QDate& date) {
    // Noon, so that no zone's offset moves the weekday.
    return Formatters::date(QStringLiteral("ddd"))->string(QDateTime(date, QTime(12, 0)));
}

} // namespace

WxReading reading(const WxLive& live) {
    WxReading result{
        .temp = live.temp,
        .feels = live.feels,
        .hi = live.hi,
        .lo = live.lo,
        .sunrise = live.sunrise,
        .sunset = live.sunset,
        .hourly = {},
        .daily = {},
        .air = live.air,
    };
    for (qsizetype i = 0; i < live.hourly.size(); ++i) {
        const WxLiveHour& hour = live.hourly.at(i);
        result.hourly.append({static_cast<int>(i), hour.label, symbol(hour.condition), hour.temp});
    }
    for (qsizetype i = 0; i < live.daily.size(); ++i) {
        const WxLiveDay& day = live.daily.at(i);
        result.daily.append(
            {static_cast<int>(i), dayName(day.date), symbol(day.condition), day.lo, day.hi});
    }
    return result;
}

WxReading reskin(WxReading reading, WxCondition condition) {
    const QString look = symbol(condition);
    for (WxHourEntry& hour : reading.hourly) {
        hour.symbol = look;
    }
    for (WxDayEntry& day : reading.daily) {
        day.symbol = look;
    }
    return reading;
}

int fahrenheit(int celsius) {
    return static_cast<int>(std::round(celsius * 9.0 / 5.0 + 32.0));
}

WxReading inFahrenheit(WxReading reading) {
    for (int* value : {&reading.temp, &reading.feels, &reading.hi, &reading.lo}) {
        *value = fahrenheit(*value);
    }
    for (WxHourEntry& hour : reading.hourly) {
        hour.temp = fahrenheit(hour.temp);
    }
    for (WxDayEntry& day : reading.daily) {
        day.lo = fahrenheit(day.lo);
        day.hi = fahrenheit(day.hi);
    }
    return reading;
}

bool isNight(const std::optional<WxReading>& live, const QDateTime& now, WxMode mode) {
    if (mode == WxMode::manual || !live || !live->sunrise || !live->sunset) {
        return false;
    }
    return now < *live->sunrise || now >= *live->sunset;
}

} // namespace tw
