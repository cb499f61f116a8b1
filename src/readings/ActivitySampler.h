// The load of each core, the split of the memory and the programs that use most, from the
// machine's counters and its process table. Used by one task at a time.
#pragma once

#include "platform/SystemSource.h"
#include "readings/ActivitySnapshot.h"

#include <QDateTime>
#include <QHash>
#include <QMap>

#include <chrono>
#include <optional>

namespace tw {

class ActivitySampler {
public:
    // How many programs each list keeps.
    static constexpr qsizetype topCount = 6;

    explicit ActivitySampler(SystemSource& source);

    ActivitySnapshot sample(const QDateTime& now);

    // One fraction per core in core order, from the ticks since the last read: 0 for a core seen
    // for the first time or whose counters went back.
    QList<double> readCores();
    // The memory split and its pressure; a failed read keeps the last good split.
    void readMemory(ActivitySnapshot& into);
    // Each program's share of a core since the last read and its resident memory, its processes
    // added up by name; the busiest and the largest first.
    void readProcesses(const QDateTime& now, ActivitySnapshot& into);

    // The share of the last ten seconds some task waited for memory: from 10 % programs are
    // being slowed noticeably, from 40 % the machine thrashes.
    static ActivitySnapshot::Pressure pressureOf(std::optional<double> stallPercent);

private:
    SystemSource& m_source;
    QMap<int, CpuTicks> m_previousTicks;
    QHash<qint32, std::chrono::nanoseconds> m_previousProc;
    std::optional<QDateTime> m_previousAt;
    std::optional<MemoryCounters> m_lastMemory;
};

} // namespace tw
