#include "app/WireEnergyModes.h"

#include "readings/PowerWatcher.h"
#include "settings/AppSettings.h"
#include "tick/TickCoordinator.h"

#include <QLoggingCategory>

namespace tw {

Q_LOGGING_CATEGORY(lcEnergy, "Energy")

void wireEnergyModes(AppSettings& settings, TickCoordinator& ticker, PowerWatcher* watcher) {
    const auto follow = [&settings, &ticker] {
        const AppSettings::EnergyMode mode = settings.effectiveEnergyMode();
        ticker.setInterval(AppSettings::tickInterval(mode));
        qCInfo(lcEnergy, "mode in force: %s, a tick every %lld ms",
               qPrintable(AppSettings::rawValue(mode)),
               static_cast<long long>(ticker.interval().count()));
    };
    // Every change of the mode in force comes through here, the power watcher's included.
    QObject::connect(&settings, &AppSettings::effectiveEnergyModeChanged, &ticker, follow);
    if (watcher != nullptr) {
        watcher->onChange = [&settings](bool constrained) {
            settings.setPowerConstrained(constrained);
        };
        watcher->start();
    }
    follow();
}

} // namespace tw
