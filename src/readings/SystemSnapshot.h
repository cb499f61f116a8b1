// One reading of the whole machine, shared by every tile that shows it.
#pragma once

#include <QDateTime>

#include <optional>

namespace tw {

enum class SysMetric { cpu, gpu, ram, disk };

struct SystemSnapshot {
    QDateTime sampledAt;
    // All cores together, a fraction from 0 to 1.
    double cpu = 0;
    // None where the machine reports no graphics load.
    std::optional<double> gpu;
    double ramUsed = 0;
    double ramTotal = 0;
    double diskFree = 0;
    double diskTotal = 0;
    bool operator==(const SystemSnapshot&) const = default;

    // The metric as a fraction from 0 to 1: the graphics load, memory and disk in use; 0 where
    // unknown.
    double value(SysMetric metric) const;
};

// The space of the root volume a user can write, in bytes.
struct SystemDiskSnapshot {
    double free = 0;
    double total = 0;
    bool operator==(const SystemDiskSnapshot&) const = default;
};

} // namespace tw
