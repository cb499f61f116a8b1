// What a custom widget costs per redraw: its texts are rendered at every tick, so a tile's worth of
// tokens against a forecast-sized document must stay far below a frame; parsing happens once per
// fetch and is measured beside it.
#include "custom/CustomTokens.h"

#include <benchmark/benchmark.h>

using namespace tw;

namespace {

// A week of hourly readings in three series, as a weather service answers.
QByteArray forecastAnswer() {
    QByteArray hours;
    for (int hour = 0; hour < 168; ++hour) {
        hours += (hour ? "," : "") + QByteArray::number(12.5 + hour % 24 * 0.4, 'f', 1);
    }
    return R"({"latitude": 52.52, "longitude": 13.41, "timezone": "Europe/Berlin",
        "current": {"time": "2026-11-24T09:30", "temperature_2m": 7.4, "wind_speed_10m": 14.2,
                    "relative_humidity_2m": 81, "weather_code": 3},
        "hourly": {"temperature_2m": [)" +
           hours + "], \"precipitation\": [" + hours + "], \"wind_speed_10m\": [" + hours +
           R"(]}, "daily": {"time": ["2026-11-24", "2026-11-25"], "temperature_2m_max": [9.1, 8.4]},
        "items": [{"title": "First", "count": 12}, {"title": "Second", "count": "7,5"}]})";
}

CustomValueBag liveBag() {
    CustomValueBag values;
    values.now = QDateTime(QDate(2026, 11, 24), QTime(9, 30, 12));
    SystemSnapshot system;
    system.cpu = 0.31;
    system.ramUsed = 9e9;
    system.ramTotal = 16e9;
    system.diskFree = 2e11;
    system.diskTotal = 5e11;
    values.system = system;
    values.battery = BatterySnapshot{.percent = 77, .hasBattery = true};
    values.host = QStringLiteral("studio");
    values.user = QStringLiteral("ada");
    values.uptime = std::chrono::duration<double>(200000);
    values.data = CustomJSON::parse(forecastAnswer());
    values.named.insert(QStringLiteral("berlin"), *values.data);
    return values;
}

// Fifty tokens over the kinds a tile mixes: document paths deep and shallow, a named source,
// the readings, the clock.
QString tileText() {
    const QStringList tokens{QStringLiteral("{data:current.temperature_2m}°"),
                             QStringLiteral("{data:hourly.temperature_2m.100}"),
                             QStringLiteral("{data.berlin:current.wind_speed_10m} km/h"),
                             QStringLiteral("{data:items.1.title}"),
                             QStringLiteral("{data:daily.temperature_2m_max.0}"),
                             QStringLiteral("{cpu}%"),
                             QStringLiteral("{ram.used} GB"),
                             QStringLiteral("{disk.free}"),
                             QStringLiteral("{time:HH:mm}"),
                             QStringLiteral("{battery.state}")};
    QString text;
    for (int i = 0; i < 50; ++i) {
        text += tokens.at(i % tokens.size()) + QStringLiteral(" · ");
    }
    return text;
}

void BM_RenderTile(benchmark::State& state) {
    const CustomValueBag values = liveBag();
    const QString text = tileText();
    for (auto _ : state) {
        benchmark::DoNotOptimize(CustomTokens::render(text, values));
    }
    state.SetItemsProcessed(state.iterations() * 50);
}
BENCHMARK(BM_RenderTile);

void BM_ScanTile(benchmark::State& state) {
    const QString text = tileText();
    for (auto _ : state) {
        benchmark::DoNotOptimize(CustomTokens::scan(text));
    }
}
BENCHMARK(BM_ScanTile);

void BM_ParseAnswer(benchmark::State& state) {
    const QByteArray answer = forecastAnswer();
    for (auto _ : state) {
        benchmark::DoNotOptimize(CustomJSON::parse(answer));
    }
    state.SetBytesProcessed(state.iterations() * answer.size());
}
BENCHMARK(BM_ParseAnswer);

} // namespace

BENCHMARK_MAIN();
