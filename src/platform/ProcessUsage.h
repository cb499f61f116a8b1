// What this process costs the machine: processor time used so far and memory held now.
#pragma once

#include <QtGlobal>

#include <chrono>

namespace tw {

class ProcessUsage {
public:
    ProcessUsage() = default;
    virtual ~ProcessUsage() = default;
    Q_DISABLE_COPY_MOVE(ProcessUsage)

    // User and system time of every thread since the start.
    virtual std::chrono::nanoseconds processorTime() const = 0;
    // Resident memory in bytes; 0 when unknown.
    virtual qint64 residentBytes() const = 0;
};

} // namespace tw
