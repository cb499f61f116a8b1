#include "app/LaunchModes.h"
#include "tick/SnapshotClock.h"

namespace tw {

std::optional<int> runSnapshotTimeStep(LaunchContext& context) {
    const QString value = qEnvironmentVariable("TWK_TIME");
    if (const auto pin = SnapshotClock::pinFor(value, context.clock.now())) {
        context.clock.setPinned(pin);
    }
    return std::nullopt;
}

} // namespace tw
