// The desktop ticks at the pace of the energy mode in force, and power running short forces
// Energy Saver where the person allows it.
#pragma once

namespace tw {

class AppSettings;
class PowerWatcher;
class TickCoordinator;

// Sets the interval now and at every move of the mode in force, then starts `watcher` (null on
// a system with no power readings), whose verdict becomes `powerConstrained`. The three must
// live as long as one another.
void wireEnergyModes(AppSettings& settings, TickCoordinator& ticker, PowerWatcher* watcher);

} // namespace tw
