// The activity readings shared by every tile that shows them: a walk of the process table at
// most once an interval, one at a time.
#pragma once

#include "readings/ActivitySnapshot.h"
#include "readings/PolledSample.h"

namespace tw {

class SystemSource;

class ActivityService final : public PolledSample<ActivitySnapshot> {
public:
    static constexpr std::chrono::milliseconds refreshInterval{2000};

    // Reads through an `ActivitySampler` of `source`, which must outlive the runner's work.
    ActivityService(SystemSource& source, SampleRunner& runner, Receiver receiver);
};

} // namespace tw
