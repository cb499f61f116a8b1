#include "app/LaunchModes.h"
#include "platform/PlatformServices.h"
#include "platform/null/NullSensorSource.h"
#include "readings/SensorProbe.h"
#include "tick/SnapshotClock.h"

namespace tw {

std::optional<int> runSensordMode(LaunchContext& context) {
    const PlatformServices sources = PlatformServices::makeReadingSources();
    const NullSensorSource none;
    const SensorProbe::Report report = SensorProbe::report(
        sources.sensors ? *sources.sensors : static_cast<const SensorSource&>(none),
        context.clock.now());
    context.out << report.text;
    return report.foundAnything ? 0 : 1;
}

} // namespace tw
