// The figures of the whole machine from its counters: the processor's load between two reads,
// the memory in use, the graphics load and the root volume's space, which is read once a minute.
// Used by one task at a time.
#pragma once

#include "platform/SystemSource.h"
#include "readings/SystemSnapshot.h"

#include <QDateTime>

#include <chrono>
#include <optional>
#include <utility>

namespace tw {

class SystemReader {
public:
    static constexpr std::chrono::seconds diskCacheInterval{60};

    explicit SystemReader(SystemSource& source);

    // Busy ticks over all ticks since the last read, nice time counted busy: 0 on the first read
    // and on a read whose counters went back; none when they could not be read.
    std::optional<double> readCPUUsage();
    // Used and total bytes; used is what programs could not get without swapping.
    std::optional<std::pair<double, double>> readRAMUsage();
    std::optional<double> readGPUUsage();
    // The root volume as last read while that is younger than a minute (a date before it
    // misses); none while it has never been read.
    std::optional<SystemDiskSnapshot> readCachedDiskUsage(const QDateTime& now);

    // Every figure at `now`; one whose source failed keeps its last good value.
    SystemSnapshot read(const QDateTime& now);

private:
    SystemSource& m_source;
    std::optional<CpuTicks> m_previousCPU;
    std::optional<std::pair<QDateTime, SystemDiskSnapshot>> m_cachedDisk;
    SystemSnapshot m_last;
};

} // namespace tw
