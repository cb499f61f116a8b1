// The process's own cost as the kernel counts it: getrusage for processor time, /proc/self/statm
// for resident memory.
#pragma once

#include "platform/ProcessUsage.h"

namespace tw {

class ProcProcessUsage final : public ProcessUsage {
public:
    std::chrono::nanoseconds processorTime() const override;
    qint64 residentBytes() const override;
};

} // namespace tw
