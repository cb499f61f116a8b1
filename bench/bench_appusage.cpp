// The app time ledger over 90 days of work: ten hours a day among twelve apps, switching every
// few minutes. What the tile asks every ten minutes (the summary of a range, and the day's goal
// by category), what each 20-second tick costs, and the file written every 100 seconds.
#include "desk/AppUsageTracker.h"
#include "desk/AppUsageView.h"

#include <QTimeZone>

#include <benchmark/benchmark.h>

namespace {

using namespace tw;

constexpr int days = 90;
constexpr int apps = 12;
const QDateTime end(QDate(2026, 6, 30), QTime(18, 0), QTimeZone("Europe/Berlin"));

// Every day from 08:00 to 18:00, a tick every 20 s and another app every 4 minutes; `keep` false
// leaves every hour in (a file that was never pruned), true prunes as the tracker does.
AppUsageTracker replay(bool keep) {
    AppUsageTracker tracker;
    const double last = static_cast<double>(end.toSecsSinceEpoch());
    for (int day = days - 1; day >= 0; --day) {
        const double start = last - day * 86400.0 - 10 * 3600.0;
        for (int tick = 0; tick < 1800; ++tick) {
            const int app = (tick / 12 + day) % apps;
            const AppRef ref{.id = QStringLiteral("org.example.App%1").arg(app),
                             .name = QStringLiteral("App %1").arg(app)};
            if (keep) {
                tracker.tick(ref, start + tick * 20.0, 5);
            } else {
                tracker.settle(start + tick * 20.0, 5);
                if (!tracker.current || tracker.current->app != ref) {
                    tracker.current =
                        AppUsageTracker::Current{.app = ref, .since = start + tick * 20.0};
                }
            }
        }
    }
    return tracker;
}

AppCategory categoryOf(const QString& id) {
    return static_cast<AppCategory>(id.back().unicode() % 6);
}

void summary(benchmark::State& state) {
    static const AppUsageLedger pruned = replay(true).ledger;
    static const AppUsageLedger whole = replay(false).ledger;
    const AppUsageLedger& ledger = state.range(1) != 0 ? whole : pruned;
    AppUsageSettings settings;
    settings.range = static_cast<AppUsageRange>(state.range(0));
    settings.goal = AppUsageGoal::focus;
    const auto icon = [](const QString&) { return QString(); };
    for (auto _ : state) {
        const AppUsageView view = makeAppUsageView(ledger, settings, end, categoryOf, icon);
        benchmark::DoNotOptimize(view.summary.total);
    }
    state.counters["hours"] = static_cast<double>(ledger.buckets().size());
}
// Ranges 24 h, today, 7 days; a pruned ledger, then one holding all 90 days.
BENCHMARK(summary)
    ->ArgsProduct({{0, 1, 2}, {0, 1}})
    ->ArgNames({"range", "unpruned"})
    ->Unit(benchmark::kMicrosecond);

void tick(benchmark::State& state) {
    AppUsageTracker tracker = replay(true);
    double t = static_cast<double>(end.toSecsSinceEpoch());
    const AppRef ref{.id = QStringLiteral("org.example.App1"), .name = QStringLiteral("App 1")};
    for (auto _ : state) {
        t += 20;
        tracker.tick(ref, t, 1);
    }
}
BENCHMARK(tick)->Unit(benchmark::kNanosecond);

void encode(benchmark::State& state) {
    const AppUsageLedger ledger = replay(true).ledger;
    qsizetype bytes = 0;
    for (auto _ : state) {
        bytes = ledger.toJson().size();
        benchmark::DoNotOptimize(bytes);
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(encode)->Unit(benchmark::kMicrosecond);

void decode(benchmark::State& state) {
    const QByteArray json = replay(true).ledger.toJson();
    for (auto _ : state) {
        benchmark::DoNotOptimize(AppUsageLedger::fromJson(json));
    }
}
BENCHMARK(decode)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
