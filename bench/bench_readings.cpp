// The cost of one full sample of each readings service over this machine's own sources.
#include "platform/PlatformServices.h"
#include "readings/ActivitySampler.h"
#include "readings/NetworkSampler.h"
#include "readings/SensorReader.h"
#include "readings/SystemReader.h"

#include <QCoreApplication>
#include <QDateTime>

#include <benchmark/benchmark.h>

using namespace tw;

namespace {

const PlatformServices& sources() {
    static const PlatformServices made = PlatformServices::makeReadingSources();
    return made;
}

// Each read a second after the last, as the tick would ask.
QDateTime next(QDateTime& now) {
    now = now.addSecs(1);
    return now;
}

template <typename Sample>
void samplingSystem(benchmark::State& state, Sample sample) {
    SystemSource* source = sources().system.get();
    if (source == nullptr) {
        state.SkipWithError("no system source on this platform");
        return;
    }
    sample(state, *source);
}

void systemReader(benchmark::State& state) {
    samplingSystem(state, [](benchmark::State& s, SystemSource& source) {
        SystemReader reader(source);
        QDateTime now = QDateTime::currentDateTime();
        for (auto _ : s) {
            // Past the disk's minute each time: the whole sample, statfs included.
            now = now.addSecs(61);
            benchmark::DoNotOptimize(reader.read(now));
        }
    });
}

void activitySampler(benchmark::State& state) {
    samplingSystem(state, [](benchmark::State& s, SystemSource& source) {
        ActivitySampler sampler(source);
        QDateTime now = QDateTime::currentDateTime();
        for (auto _ : s) {
            benchmark::DoNotOptimize(sampler.sample(next(now)));
        }
    });
}

void networkSampler(benchmark::State& state) {
    samplingSystem(state, [](benchmark::State& s, SystemSource& source) {
        NetworkSampler sampler(source);
        QDateTime now = QDateTime::currentDateTime();
        for (auto _ : s) {
            benchmark::DoNotOptimize(sampler.sample(next(now)));
        }
    });
}

void volumes(benchmark::State& state) {
    samplingSystem(state, [](benchmark::State& s, SystemSource& source) {
        for (auto _ : s) {
            benchmark::DoNotOptimize(source.volumes());
        }
    });
}

void sensorReader(benchmark::State& state) {
    const SensorSource* source = sources().sensors.get();
    if (source == nullptr) {
        state.SkipWithError("no sensor source on this platform");
        return;
    }
    QDateTime now = QDateTime::currentDateTime();
    for (auto _ : state) {
        benchmark::DoNotOptimize(SensorReader::snapshotOf(source->read(), next(now)));
    }
}

} // namespace

BENCHMARK(systemReader)->Unit(benchmark::kMicrosecond);
BENCHMARK(activitySampler)->Unit(benchmark::kMillisecond);
BENCHMARK(networkSampler)->Unit(benchmark::kMicrosecond);
BENCHMARK(volumes)->Unit(benchmark::kMicrosecond);
BENCHMARK(sensorReader)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
