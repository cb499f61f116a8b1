// The cost of one tick of the one timer, with a desktop's worth of views subscribed.
#include "platform/Clock.h"
#include "platform/Scheduler.h"
#include "tick/MinuteCoordinator.h"
#include "tick/TickCoordinator.h"
#include "tick/TimeSource.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <benchmark/benchmark.h>
#include <memory>
#include <vector>

using namespace tw;

namespace {

// Keeps the repeating action so the benchmark can run exactly the tick, without a timer around it.
class CapturingScheduler final : public Scheduler {
public:
    ScheduledTask singleShot(Duration, Duration, const QObject*, std::function<void()>) override {
        return {};
    }
    ScheduledTask repeating(Duration, Duration, const QObject*,
                            std::function<void()> action) override {
        m_action = std::move(action);
        return ScheduledTask([this] { m_action = {}; });
    }
    void fire() const { m_action(); }

private:
    std::function<void()> m_action;
};

// Wall time that moves by a fixed step at each reading, converted to local time as the system
// clock's is.
class SteppingClock final : public Clock {
public:
    explicit SteppingClock(std::chrono::milliseconds step)
        : m_step(step) {}
    QDateTime now() const override {
        m_msecs += m_step.count();
        return QDateTime::fromMSecsSinceEpoch(m_msecs);
    }
    std::chrono::nanoseconds uptime() const override { return std::chrono::milliseconds(m_msecs); }

private:
    std::chrono::milliseconds m_step;
    mutable qint64 m_msecs = QDateTime::currentMSecsSinceEpoch();
};

// A face stand-in: counts the repaints it would ask for.
struct Desk {
    Desk(Scheduler& scheduler, const Clock& clock, const benchmark::State& state)
        : ticker(scheduler, clock, clock)
        , minutes(ticker) {
        add(TimeGrain::Seconds, int(state.range(0)));
        add(TimeGrain::Minutes, int(state.range(1)));
    }
    void add(TimeGrain grain, int count) {
        for (int i = 0; i < count; ++i) {
            auto source = std::make_unique<TimeSource>(grain, ticker, minutes);
            QObject::connect(source.get(), &TimeSource::timeChanged, source.get(),
                             [this] { ++repaints; });
            sources.push_back(std::move(source));
        }
    }
    TickCoordinator ticker;
    MinuteCoordinator minutes;
    std::vector<std::unique_ptr<TimeSource>> sources;
    long repaints = 0;
};

void tickWithSubscribers(benchmark::State& state) {
    CapturingScheduler scheduler;
    SteppingClock clock(std::chrono::seconds(1));
    Desk desk(scheduler, clock, state);
    desk.ticker.setActive(true);
    for (auto _ : state) {
        scheduler.fire();
    }
    state.counters["repaints/tick"] =
        benchmark::Counter(double(desk.repaints) / double(state.iterations()));
}
// Arguments: views at the seconds grain, views at the minutes grain. A desktop of minute clocks
// only is the common idle case.
BENCHMARK(tickWithSubscribers)
    ->ArgNames({"seconds", "minutes"})
    ->Args({0, 0})
    ->Args({0, 100})
    ->Args({100, 100})
    ->Unit(benchmark::kMicrosecond);

// The worst tick: every one turns a minute, so the minute views wake as well.
void tickTurningAMinute(benchmark::State& state) {
    CapturingScheduler scheduler;
    SteppingClock clock(std::chrono::minutes(1));
    Desk desk(scheduler, clock, state);
    desk.ticker.setActive(true);
    for (auto _ : state) {
        scheduler.fire();
    }
    state.counters["repaints/tick"] =
        benchmark::Counter(double(desk.repaints) / double(state.iterations()));
}
BENCHMARK(tickTurningAMinute)
    ->ArgNames({"seconds", "minutes"})
    ->Args({100, 100})
    ->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
