// The machine's system readings shared by every tile that shows them: one read every two
// seconds at most, however many ask.
#pragma once

#include "readings/SharedSample.h"
#include "readings/SystemSnapshot.h"

namespace tw {

class SystemSource;

class SystemDataService final : public SharedSample<SystemSnapshot> {
public:
    static constexpr std::chrono::milliseconds refreshInterval{2000};

    // Reads through a `SystemReader` of `source`, which must outlive the runner's work.
    SystemDataService(SystemSource& source, SampleRunner& runner);
    SystemDataService(Sampler sampler, SampleRunner& runner);
};

} // namespace tw
