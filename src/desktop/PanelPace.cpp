#include "desktop/PanelPace.h"

#include "desktop/PanelState.h"
#include "settings/AppSettings.h"

namespace tw {

AnimationPace panelPace(const AppSettings& settings, const PanelState& state) {
    if (settings.appActive() || state.occluded()) {
        return AnimationPace::paused();
    }
    switch (settings.effectiveEnergyMode()) {
    case AppSettings::EnergyMode::high:
        return AnimationPace::smooth();
    case AppSettings::EnergyMode::saver:
        return AnimationPace::paused();
    case AppSettings::EnergyMode::balanced:
        return state.hovering() ? AnimationPace::smooth() : AnimationPace::paused();
    }
    Q_UNREACHABLE();
}

bool panelAllowsTransitions(const AppSettings& settings, const PanelState& state) {
    return !state.occluded() && settings.effectiveEnergyMode() != AppSettings::EnergyMode::saver;
}

} // namespace tw
