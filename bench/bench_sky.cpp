// The cost of one call of the moon and sun mathematics a tile makes when it draws or a day begins.
#include "weather/MoonMath.h"
#include "weather/SunGeometry.h"

#include <QDateTime>
#include <QTimeZone>

#include <benchmark/benchmark.h>

using namespace tw;

namespace {

const QDateTime start(QDate(2026, 3, 20), QTime(18, 30), QTimeZone(3600));

void BM_Illumination(benchmark::State& state) {
    QDateTime at = start;
    for (auto _ : state) {
        benchmark::DoNotOptimize(MoonMath::illumination(at));
        at = at.addSecs(60);
    }
}
BENCHMARK(BM_Illumination);

void BM_MoonPosition(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(MoonMath::position(start, 52.52, 13.40));
    }
}
BENCHMARK(BM_MoonPosition);

// Rising and setting at 52°N, and at 78°N where the walk finds nothing and goes the whole day.
void BM_MoonTimes(benchmark::State& state) {
    const double latitude = double(state.range(0));
    QDate day = start.date();
    for (auto _ : state) {
        benchmark::DoNotOptimize(MoonMath::times(day, latitude, 13.40, start.timeZone()));
        day = day.addDays(1);
    }
}
BENCHMARK(BM_MoonTimes)->Arg(52)->Arg(78);

void BM_SunTimes(benchmark::State& state) {
    const double latitude = double(state.range(0));
    QDate day = start.date();
    for (auto _ : state) {
        benchmark::DoNotOptimize(SunGeometry::times(day, latitude, 13.40, start.timeZone()));
        day = day.addDays(1);
    }
}
BENCHMARK(BM_SunTimes)->Arg(52)->Arg(78);

void BM_Subsolar(benchmark::State& state) {
    QDateTime at = start;
    for (auto _ : state) {
        benchmark::DoNotOptimize(SunGeometry::subsolar(at));
        at = at.addSecs(60);
    }
}
BENCHMARK(BM_Subsolar);

// The walk up to a month ahead and the 24 halvings: the dearest call, made once a phase.
void BM_NextFullMoon(benchmark::State& state) {
    QDateTime at = start;
    for (auto _ : state) {
        benchmark::DoNotOptimize(MoonMath::next(MoonMath::Phase::full, at));
        at = at.addDays(1);
    }
}
BENCHMARK(BM_NextFullMoon);

} // namespace

BENCHMARK_MAIN();
