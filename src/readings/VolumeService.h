// The mounted volumes and their space for the disk tiles, read every twenty seconds at most.
#pragma once

#include "platform/SystemSource.h"
#include "readings/PolledSample.h"

namespace tw {

class VolumeService final : public PolledSample<QList<Volume>> {
public:
    static constexpr std::chrono::milliseconds refreshInterval{20000};

    // `source` must outlive the runner's work.
    VolumeService(SystemSource& source, SampleRunner& runner, Receiver receiver);
};

} // namespace tw
