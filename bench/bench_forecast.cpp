// The cost of one forecast answer on its way to a tile: decoding a full eight-day answer of 192
// hours, mapping it in the place's time, and both, per call.
#include "weather/ForecastMapping.h"
#include "weather/OMResponse.h"

#include <QDate>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

#include <benchmark/benchmark.h>

using namespace tw;
using namespace Qt::StringLiterals;

namespace {

// As the forecast service answers for the query the service sends: current, 192 hours, 8 days.
QByteArray fullAnswer() {
    const QDate first(2026, 11, 24);
    QJsonArray times;
    QJsonArray temps;
    QJsonArray codes;
    for (int i = 0; i < 192; ++i) {
        times.append(u"%1T%2:00"_s.arg(first.addDays(i / 24).toString(Qt::ISODate))
                         .arg(i % 24, 2, 10, QChar(u'0')));
        temps.append(4.3 + (i % 24) * 0.37 - (i / 24) * 0.6);
        codes.append(QJsonArray{0, 1, 3, 45, 61, 63, 71, 80, 95}.at(i % 9));
    }
    QJsonArray days;
    QJsonArray maxima;
    QJsonArray minima;
    QJsonArray dayCodes;
    QJsonArray sunrises;
    QJsonArray sunsets;
    for (int d = 0; d < 8; ++d) {
        const QString day = first.addDays(d).toString(Qt::ISODate);
        days.append(day);
        maxima.append(9.4 - d * 0.8);
        minima.append(1.2 - d * 0.7);
        dayCodes.append(QJsonArray{3, 61, 0, 71, 45, 80, 2, 95}.at(d));
        sunrises.append(QString(day + u"T07:41"_s));
        sunsets.append(QString(day + u"T16:03"_s));
    }
    const QJsonObject answer{
        {u"latitude"_s, 52.52},
        {u"longitude"_s, 13.419998},
        {u"generationtime_ms"_s, 0.21},
        {u"utc_offset_seconds"_s, 3600},
        {u"timezone"_s, u"Europe/Berlin"_s},
        {u"timezone_abbreviation"_s, u"GMT+1"_s},
        {u"elevation"_s, 38.0},
        {u"current"_s, QJsonObject{{u"time"_s, u"2026-11-24T13:00"_s},
                                   {u"interval"_s, 900},
                                   {u"temperature_2m"_s, 5.3},
                                   {u"apparent_temperature"_s, 1.9},
                                   {u"weather_code"_s, 3},
                                   {u"is_day"_s, 1}}},
        {u"hourly"_s,
         QJsonObject{{u"time"_s, times}, {u"temperature_2m"_s, temps}, {u"weather_code"_s, codes}}},
        {u"daily"_s, QJsonObject{{u"time"_s, days},
                                 {u"temperature_2m_max"_s, maxima},
                                 {u"temperature_2m_min"_s, minima},
                                 {u"weather_code"_s, dayCodes},
                                 {u"sunrise"_s, sunrises},
                                 {u"sunset"_s, sunsets}}},
    };
    return QJsonDocument(answer).toJson(QJsonDocument::Compact);
}

const QDateTime now(QDate(2026, 11, 24), QTime(12, 20), QTimeZone::utc());

void decode(benchmark::State& state) {
    const QByteArray answer = fullAnswer();
    for (auto _ : state) {
        benchmark::DoNotOptimize(OMResponse::fromAnswer(answer));
    }
    state.SetBytesProcessed(state.iterations() * answer.size());
}
BENCHMARK(decode);

void map(benchmark::State& state) {
    const std::optional<OMResponse> response = OMResponse::fromAnswer(fullAnswer());
    if (!response) {
        state.SkipWithError("the answer does not decode");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(mapResponse(*response, now));
    }
}
BENCHMARK(map);

void decodeAndMap(benchmark::State& state) {
    const QByteArray answer = fullAnswer();
    for (auto _ : state) {
        const std::optional<OMResponse> response = OMResponse::fromAnswer(answer);
        benchmark::DoNotOptimize(response ? mapResponse(*response, now) : std::nullopt);
    }
}
BENCHMARK(decodeAndMap);

} // namespace

BENCHMARK_MAIN();
