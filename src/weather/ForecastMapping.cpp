#include "weather/ForecastMapping.h"

#include "text/L.h"

#include <QLocale>
#include <QTimeZone>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

constexpr qsizetype maxHourly = 12;
constexpr qsizetype maxDaily = 7;

// Half away from zero; held to a range no temperature leaves, so that any double fits an int.
int rounded(double celsius) {
    return static_cast<int>(std::round(std::clamp(celsius, -1.0e6, 1.0e6)));
}

QTimeZone placeZone(const std::optional<int>& utcOffsetSeconds, const QDateTime& now) {
    const QTimeZone system = QTimeZone::systemTimeZone();
    const QTimeZone zone(utcOffsetSeconds.value_or(system.offsetFromUtc(now)));
    return zone.isValid() ? zone : system;
}

std::optional<QDateTime> parseMinute(const std::optional<QList<QString>>& list,
                                     const QTimeZone& zone) {
    if (!list || list->isEmpty()) {
        return std::nullopt;
    }
    const QString& text = list->first();
    if (text.size() != 16 || text.at(10) != QLatin1Char('T')) {
        return std::nullopt;
    }
    const QDate date = QDate::fromString(text.left(10), QStringLiteral("yyyy-MM-dd"));
    const QTime time = QTime::fromString(text.mid(11), QStringLiteral("HH:mm"));
    if (!date.isValid() || !time.isValid()) {
        return std::nullopt;
    }
    return QDateTime(date, time, zone);
}

} // namespace

std::optional<WxLive> mapResponse(const OMResponse& response, const QDateTime& now) {
    const OMResponse::Hourly& hourly = response.hourly;
    const OMResponse::Daily& daily = response.daily;
    if (daily.tempMax.isEmpty() || daily.tempMin.isEmpty() || !response.temperature ||
        !response.code) {
        return std::nullopt;
    }
    const QTimeZone zone = placeZone(response.utcOffsetSeconds, now);

    const QString currentHour =
        QLocale::c().toString(now.toTimeZone(zone), QStringLiteral("yyyy-MM-dd'T'HH"));
    const auto found = std::find_if(hourly.time.begin(), hourly.time.end(),
                                    [&](const QString& t) { return t.startsWith(currentHour); });
    const qsizetype start = found == hourly.time.end() ? 0 : found - hourly.time.begin();
    const qsizetype hourCount =
        std::min({hourly.time.size(), hourly.temps.size(), hourly.codes.size()});

    WxLive live;
    for (qsizetype i = start; i < hourCount && live.hourly.size() < maxHourly; ++i) {
        live.hourly.append({
            .label = i == start ? QStringLiteral("Now") : hourly.time.at(i).mid(11, 2),
            .condition = conditionForWmoCode(hourly.codes.at(i)),
            .temp = rounded(hourly.temps.at(i)),
        });
    }
    if (live.hourly.isEmpty()) {
        return std::nullopt;
    }

    const qsizetype dayCount = std::min(
        {daily.time.size(), daily.tempMax.size(), daily.tempMin.size(), daily.codes.size()});
    for (qsizetype i = 1; i < dayCount && live.daily.size() < maxDaily; ++i) {
        const QDate date = QDate::fromString(daily.time.at(i), QStringLiteral("yyyy-MM-dd"));
        if (!date.isValid()) {
            continue;
        }
        live.daily.append({
            .date = date,
            .condition = conditionForWmoCode(daily.codes.at(i)),
            .lo = rounded(daily.tempMin.at(i)),
            .hi = rounded(daily.tempMax.at(i)),
        });
    }

    live.city = L("weather.currentLocation", QStringLiteral("Current Location"));
    live.temp = rounded(*response.temperature);
    live.feels = rounded(response.apparent.value_or(*response.temperature));
    live.hi = rounded(daily.tempMax.first());
    live.lo = rounded(daily.tempMin.first());
    live.condition = conditionForWmoCode(*response.code);
    live.code = response.code;
    live.isDay = response.isDay.value_or(1) != 0;
    live.sunrise = parseMinute(daily.sunrise, zone);
    live.sunset = parseMinute(daily.sunset, zone);
    return live;
}

} // namespace tw
