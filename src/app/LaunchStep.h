// One link of the launch chain: a flag with its values and the job it does, or an environment step.
#pragma once

#include "app/LaunchArguments.h"

#include <QStringList>
#include <QTextStream>

#include <optional>

namespace tw {

class Defaults;
class SnapshotClock;

// The Qt application object a step needs: plain, with pixels, with pixels but never a display
// (pictures), with widgets but never a display (pictures of windows), or with windows and widgets.
enum class ApplicationKind { core, gui, offscreen, offscreenWidgets, widgets };

// What every step may use; made once the application object exists and the language is applied.
struct LaunchContext {
    const LaunchArguments& arguments;
    SnapshotClock& clock;
    Defaults& defaults;
    QTextStream& out;
    QTextStream& err;
    // The values that followed the winning flag.
    QStringList values;
};

struct LaunchStep {
    // The exact argument that selects the step; nullptr for a step that every run passes through
    // on its way down the chain (as the TWK_TIME pin).
    const char* flag;
    // How many arguments must follow the flag; fewer and the flag counts as absent.
    int valueCount;
    ApplicationKind application;
    // An exit status ends the run; nullopt lets the chain go on.
    std::optional<int> (*run)(LaunchContext& context);
};

} // namespace tw
