#include "app/WireEnergyModes.h"

#include "readings/PowerWatcher.h"
#include "settings/AppSettings.h"
#include "tick/TickCoordinator.h"

namespace tw {

void wireEnergyModes(AppSettings& settings, TickCoordinator& ticker, PowerWatcher* watcher) {
    const auto follow = [&settings, &ticker] {
        ticker.setInterval(AppSettings::tickInterval(settings.effectiveEnergyMode()));
    };
    QObject::connect(&settings, &AppSettings::effectiveEnergyModeChanged, &ticker, follow);
    if (watcher != nullptr) {
        watcher->onChange = [&settings, follow](bool constrained) {
            settings.setPowerConstrained(constrained);
            // The switch may be off, and then the mode in force stays; setting it again is free.
            follow();
        };
        watcher->start();
    }
    follow();
}

} // namespace tw
