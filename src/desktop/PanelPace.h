// How much one desktop panel may move, from the settings and what the desktop knows of the panel.
#pragma once

#include "tick/AnimationPace.h"

namespace tw {

class AppSettings;
class PanelState;

// First match: the program's own window in front, the panel covered, then the mode in force
// (`balanced` moves only under the pointer).
AnimationPace panelPace(const AppSettings& settings, const PanelState& state);
// Content may change with a transition only where it can be seen and Energy Saver is not in force.
bool panelAllowsTransitions(const AppSettings& settings, const PanelState& state);

} // namespace tw
