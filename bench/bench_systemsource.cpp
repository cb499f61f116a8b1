// The cost of one full read of each of the machine's counters, over this machine's /proc and /sys.
#include "platform/linux/LinuxSystemSource.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <benchmark/benchmark.h>

using namespace tw;

namespace {

template <auto read>
void readOnce(benchmark::State& state) {
    const LinuxSystemSource source;
    for (auto _ : state) {
        benchmark::DoNotOptimize((source.*read)());
    }
}

void processes(benchmark::State& state) {
    const LinuxSystemSource source;
    qsizetype count = 0;
    for (auto _ : state) {
        count = source.processes().size();
        benchmark::DoNotOptimize(count);
    }
    state.counters["processes"] = double(count);
}

BENCHMARK(readOnce<&LinuxSystemSource::processorTicks>)
    ->Name("processorTicks")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(readOnce<&LinuxSystemSource::coreTicks>)
    ->Name("coreTicks")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(readOnce<&LinuxSystemSource::memory>)->Name("memory")->Unit(benchmark::kMicrosecond);
BENCHMARK(readOnce<&LinuxSystemSource::graphicsBusy>)
    ->Name("graphicsBusy")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(readOnce<&LinuxSystemSource::volumes>)->Name("volumes")->Unit(benchmark::kMicrosecond);
BENCHMARK(readOnce<&LinuxSystemSource::networkCounters>)
    ->Name("networkCounters")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(processes)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    // A machine without a reporting graphics device says so once; the figures are what count.
    QLoggingCategory::setFilterRules(QStringLiteral("tarnwick.readings.info=false"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
