#include "app/LaunchModes.h"
#include "platform/PlatformServices.h"

namespace tw {

std::optional<int> runProbeSkylightMode(LaunchContext& context) {
    const std::unique_ptr<LockScreenSurface> surface = PlatformServices::makeLockScreenSurface();
    for (const QString& line : surface->probe()) {
        context.out << line << '\n';
    }
    // A diagnosis, not a job that can fail: the answer is in the lines.
    return 0;
}

} // namespace tw
