// The network rates shared by every tile that shows them, read once a second at most.
#pragma once

#include "readings/NetworkSnapshot.h"
#include "readings/PolledSample.h"

namespace tw {

class SystemSource;

class NetworkService final : public PolledSample<NetworkSnapshot> {
public:
    static constexpr std::chrono::milliseconds refreshInterval{1000};

    // Reads through a `NetworkSampler` of `source`, which must outlive the runner's work.
    NetworkService(SystemSource& source, SampleRunner& runner, Receiver receiver);
};

} // namespace tw
