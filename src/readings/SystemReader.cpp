#include "readings/SystemReader.h"

#include "readings/CounterDelta.h"

namespace tw {

SystemReader::SystemReader(SystemSource& source)
    : m_source(source) {}

std::optional<double> SystemReader::readCPUUsage() {
    const std::optional<CpuTicks> ticks = m_source.processorTicks();
    if (!ticks) {
        return std::nullopt;
    }
    const std::optional<CpuTicks> previous = std::exchange(m_previousCPU, ticks);
    if (!previous) {
        return 0.0;
    }
    const auto user = counterDelta(previous->user, ticks->user);
    const auto nice = counterDelta(previous->nice, ticks->nice);
    const auto system = counterDelta(previous->system, ticks->system);
    const auto idle = counterDelta(previous->idle, ticks->idle);
    if (!user || !nice || !system || !idle) {
        return 0.0;
    }
    const quint64 busy = *user + *nice + *system;
    const quint64 total = busy + *idle;
    return total > 0 ? double(busy) / double(total) : 0.0;
}

std::optional<std::pair<double, double>> SystemReader::readRAMUsage() {
    const std::optional<MemoryCounters> memory = m_source.memory();
    if (!memory || memory->total <= 0) {
        return std::nullopt;
    }
    const qint64 used = qBound(qint64(0), memory->total - memory->available, memory->total);
    return std::pair(double(used), double(memory->total));
}

std::optional<double> SystemReader::readGPUUsage() {
    const std::optional<double> busy = m_source.graphicsBusy();
    if (!busy || !(*busy >= 0)) {
        return std::nullopt;
    }
    return qMin(*busy, 1.0);
}

std::optional<SystemDiskSnapshot> SystemReader::readCachedDiskUsage(const QDateTime& now) {
    if (m_cachedDisk) {
        const qint64 age = m_cachedDisk->first.msecsTo(now);
        if (age >= 0 && age < std::chrono::milliseconds(diskCacheInterval).count()) {
            return m_cachedDisk->second;
        }
    }
    const QList<Volume> volumes = m_source.volumes();
    if (volumes.isEmpty() || volumes.first().total <= 0) {
        // Not stamped: the next read tries again, and meanwhile the last good value stands.
        return m_cachedDisk ? std::optional(m_cachedDisk->second) : std::nullopt;
    }
    const Volume& root = volumes.first();
    m_cachedDisk.emplace(now, SystemDiskSnapshot{double(root.free), double(root.total)});
    return m_cachedDisk->second;
}

SystemSnapshot SystemReader::read(const QDateTime& now) {
    SystemSnapshot snapshot = m_last;
    snapshot.sampledAt = now;
    if (const auto cpu = readCPUUsage()) {
        snapshot.cpu = *cpu;
    }
    if (const auto ram = readRAMUsage()) {
        std::tie(snapshot.ramUsed, snapshot.ramTotal) = *ram;
    }
    snapshot.gpu = readGPUUsage();
    if (const auto disk = readCachedDiskUsage(now)) {
        snapshot.diskFree = disk->free;
        snapshot.diskTotal = disk->total;
    }
    m_last = snapshot;
    return snapshot;
}

} // namespace tw
