// The machine's own counters as the system keeps them: processor time, memory, graphics load,
// volumes, network traffic and the process table. Every call reads afresh and may wait on the
// file system, so callers run it off the main thread; a source that cannot be read gives nothing
// for that call and logs once.
#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QtGlobal>

#include <chrono>
#include <optional>

namespace tw {

// Cumulative processor time in the system's ticks. Interrupt and stolen time count as system,
// waiting for input and output as idle.
struct CpuTicks {
    quint64 user = 0;
    quint64 nice = 0;
    quint64 system = 0;
    quint64 idle = 0;
    bool operator==(const CpuTicks&) const = default;
};

// Memory in bytes.
struct MemoryCounters {
    qint64 total = 0;
    // What programs could still get without swapping.
    qint64 available = 0;
    // Held by programs for themselves (anonymous and shared memory).
    qint64 application = 0;
    // Held by the kernel and never given back under pressure.
    qint64 wired = 0;
    // Kept compressed in memory.
    qint64 compressed = 0;
    // File contents kept for speed, given back on demand.
    qint64 cached = 0;
    qint64 swapUsed = 0;
    // Percentage of the last ten seconds in which some task waited for memory; none where the
    // system does not say.
    std::optional<double> pressureStall;
    bool operator==(const MemoryCounters&) const = default;
};

// A mounted volume a person keeps files on, with the space a user can really write.
struct Volume {
    QString path;
    QString name;
    qint64 free = 0;
    qint64 total = 0;
    bool removable = false;
    bool operator==(const Volume&) const = default;
};

// Cumulative bytes through one network interface since it came up; the loopback is never listed.
struct NetworkCounters {
    QString interface;
    quint64 received = 0;
    quint64 sent = 0;
    bool up = false;
    bool wireless = false;
    bool operator==(const NetworkCounters&) const = default;
};

// One process as the table shows it now.
struct ProcessSample {
    qint32 pid = 0;
    QString name;
    // User and system time since the process started.
    std::chrono::nanoseconds processorTime{0};
    quint64 residentBytes = 0;
    bool operator==(const ProcessSample&) const = default;
};

class SystemSource {
public:
    SystemSource() = default;
    virtual ~SystemSource() = default;
    Q_DISABLE_COPY_MOVE(SystemSource)

    // All cores together.
    virtual std::optional<CpuTicks> processorTicks() const = 0;
    // By logical core number; a core that is offline is absent.
    virtual QMap<int, CpuTicks> coreTicks() const = 0;
    virtual std::optional<MemoryCounters> memory() const = 0;
    // Fraction from 0 to 1 of the busiest graphics device; none where no driver reports it.
    virtual std::optional<double> graphicsBusy() const = 0;
    // The root volume first, then the others a person would recognise (no pseudo file systems).
    virtual QList<Volume> volumes() const = 0;
    virtual QList<NetworkCounters> networkCounters() const = 0;
    // Processes this user may read; another user's that cannot be read are left out.
    virtual QList<ProcessSample> processes() const = 0;
};

} // namespace tw
