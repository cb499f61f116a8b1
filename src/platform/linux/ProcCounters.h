// Readers of the kernel's counter texts (/proc/stat, /proc/meminfo, /proc/pressure/memory,
// /proc/self/mounts, /proc/net/dev, /proc/<pid>/stat), over bytes already read, so that any bytes
// can be fed to them. A line that is too long, malformed or holds a number out of range is
// dropped, never wrapped into a wrong figure.
#pragma once

#include "platform/SystemSource.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <optional>

namespace tw {

struct ProcCounters {
    // Longer lines are dropped unread.
    static constexpr qsizetype maxLineBytes = 64 * 1024;

    struct ProcessorTicks {
        std::optional<CpuTicks> all;
        QMap<int, CpuTicks> cores;
    };
    static ProcessorTicks processorTicks(const QByteArray& stat);

    // Without the pressure stall, which lives in a file of its own; none without MemTotal.
    static std::optional<MemoryCounters> memory(const QByteArray& meminfo);
    // The "some avg10" percentage.
    static std::optional<double> pressureStall(const QByteArray& pressure);
    // /proc/uptime: the seconds since boot, its first figure.
    static std::optional<double> uptimeSeconds(const QByteArray& uptime);

    struct Mount {
        QByteArray device;
        QString path;
        QByteArray type;
        bool operator==(const Mount&) const = default;
    };
    static QList<Mount> mounts(const QByteArray& table);
    // The mounts a person keeps files on: the root first, then the others in the order they were
    // mounted. A mount hidden by a later one on the same path is gone; a device mounted twice
    // counts once, where it was mounted first.
    static QList<Mount> volumeMounts(const QList<Mount>& mounts);
    // The kernel writes space, tab, newline and backslash in a mount path as "\ooo".
    static QByteArray decodeMountEscapes(const QByteArray& field);

    // Interface names with their byte counters; loopback left out, up and wireless left unset.
    static QList<NetworkCounters> networkCounters(const QByteArray& netDev);

    struct ProcessStat {
        QString name;
        quint64 processorTicks = 0;
        quint64 residentPages = 0;
        bool operator==(const ProcessStat&) const = default;
    };
    static std::optional<ProcessStat> processStat(const QByteArray& stat);

    // A whole non-negative number in text, trimmed, such as a sysfs attribute.
    static std::optional<quint64> number(const QByteArray& text);
};

} // namespace tw
