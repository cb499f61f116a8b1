// What the shared formatters save: a tile formats several times a second, and making a formatter
// (zone database, locale) costs far more than using one.
#include "settings/Formatters.h"

#include <QDateTime>

#include <benchmark/benchmark.h>

using namespace tw;

namespace {

const QDateTime kMoment(QDate(2026, 3, 14), QTime(9, 26, 53), Qt::UTC);

void BM_DateFromCache(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            Formatters::date(QStringLiteral("HH:mm:ss"), "Europe/Berlin")->string(kMoment));
    }
}
BENCHMARK(BM_DateFromCache);

void BM_DateFreshFormatter(benchmark::State& state) {
    for (auto _ : state) {
        const DateFormatter formatter(QStringLiteral("HH:mm:ss"), "Europe/Berlin", QLocale());
        benchmark::DoNotOptimize(formatter.string(kMoment));
    }
}
BENCHMARK(BM_DateFreshFormatter);

void BM_NumberFromCache(benchmark::State& state) {
    double value = 1234.5;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Formatters::number(1, Grouping::on)->string(value));
        value += 0.1;
    }
}
BENCHMARK(BM_NumberFromCache);

// Four threads asking at once: the cost of the one lock under contention.
void BM_DateFromCacheContended(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(Formatters::date(QStringLiteral("HH:mm"), "Asia/Tokyo"));
    }
}
BENCHMARK(BM_DateFromCacheContended)->Threads(1)->Threads(4);

} // namespace

BENCHMARK_MAIN();
