#include "readings/ActivitySampler.h"

#include "readings/CounterDelta.h"

#include <algorithm>
#include <utility>

namespace tw {

namespace {

double coreLoad(const CpuTicks& before, const CpuTicks& after) {
    const auto user = counterDelta(before.user, after.user);
    const auto nice = counterDelta(before.nice, after.nice);
    const auto system = counterDelta(before.system, after.system);
    const auto idle = counterDelta(before.idle, after.idle);
    if (!user || !nice || !system || !idle) {
        return 0;
    }
    const quint64 busy = *user + *nice + *system;
    const quint64 total = busy + *idle;
    return total > 0 ? std::min(1.0, double(busy) / double(total)) : 0;
}

QList<ActivityProcess> firstBy(QList<ActivityProcess> programs,
                               bool (*before)(const ActivityProcess&, const ActivityProcess&)) {
    std::stable_sort(programs.begin(), programs.end(), before);
    programs.resize(std::min(programs.size(), ActivitySampler::topCount));
    return programs;
}

} // namespace

ActivitySampler::ActivitySampler(SystemSource& source)
    : m_source(source) {}

ActivitySnapshot ActivitySampler::sample(const QDateTime& now) {
    ActivitySnapshot snapshot;
    snapshot.sampledAt = now;
    snapshot.cores = readCores();
    readMemory(snapshot);
    readProcesses(now, snapshot);
    return snapshot;
}

QList<double> ActivitySampler::readCores() {
    const QMap<int, CpuTicks> ticks = m_source.coreTicks();
    QList<double> cores;
    cores.reserve(ticks.size());
    // Keyed by core number: a core that comes or goes leaves the others' counters alone.
    for (auto it = ticks.cbegin(); it != ticks.cend(); ++it) {
        const auto previous = m_previousTicks.constFind(it.key());
        cores.append(previous == m_previousTicks.cend() ? 0 : coreLoad(*previous, it.value()));
    }
    m_previousTicks = ticks;
    return cores;
}

void ActivitySampler::readMemory(ActivitySnapshot& into) {
    if (const std::optional<MemoryCounters> memory = m_source.memory()) {
        m_lastMemory = memory;
    }
    if (!m_lastMemory) {
        return;
    }
    const MemoryCounters& memory = *m_lastMemory;
    into.memTotal = double(memory.total);
    into.memApp = double(std::max<qint64>(memory.application, 0));
    into.memWired = double(std::max<qint64>(memory.wired, 0));
    into.memCompressed = double(std::max<qint64>(memory.compressed, 0));
    into.memCached = double(std::max<qint64>(memory.cached, 0));
    into.swapUsed = double(std::max<qint64>(memory.swapUsed, 0));
    into.pressure = pressureOf(memory.pressureStall);
}

ActivitySnapshot::Pressure ActivitySampler::pressureOf(std::optional<double> stallPercent) {
    using Pressure = ActivitySnapshot::Pressure;
    if (!stallPercent) {
        return Pressure::normal;
    }
    if (*stallPercent >= 40) {
        return Pressure::critical;
    }
    return *stallPercent >= 10 ? Pressure::warning : Pressure::normal;
}

void ActivitySampler::readProcesses(const QDateTime& now, ActivitySnapshot& into) {
    const qint64 elapsedMs = m_previousAt ? m_previousAt->msecsTo(now) : 0;
    const double elapsedNs = double(elapsedMs) * 1e6;
    const QList<ProcessSample> processes = m_source.processes();

    QHash<qint32, std::chrono::nanoseconds> times;
    times.reserve(processes.size());
    QHash<QString, ActivityProcess> programs;
    for (const ProcessSample& process : processes) {
        times.insert(process.pid, process.processorTime);
        double cpu = 0;
        const auto previous = m_previousProc.constFind(process.pid);
        // A pid new to the table, or reused by a process with less time, has no share yet.
        if (elapsedNs > 0 && previous != m_previousProc.cend() &&
            *previous <= process.processorTime) {
            cpu = double((process.processorTime - *previous).count()) / elapsedNs;
        }
        auto program = programs.find(process.name);
        if (program == programs.end()) {
            program = programs.insert(process.name, {process.pid, process.name, 0, 0});
        }
        program->cpu += cpu;
        program->memory += process.residentBytes;
    }
    m_previousProc = std::move(times);
    m_previousAt = now;

    // By name first, so that ties come out in the same order on every read.
    QList<ActivityProcess> all = programs.values();
    std::sort(all.begin(), all.end(),
              [](const ActivityProcess& a, const ActivityProcess& b) { return a.name < b.name; });
    into.byCPU = firstBy(
        all, [](const ActivityProcess& a, const ActivityProcess& b) { return a.cpu > b.cpu; });
    into.byMemory = firstBy(all, [](const ActivityProcess& a, const ActivityProcess& b) {
        return a.memory > b.memory;
    });
}

} // namespace tw
