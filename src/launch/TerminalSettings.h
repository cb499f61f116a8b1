// What a terminal tile runs and how often, read from its settings.
#pragma once

#include "model/WidgetInstance.h"

#include <QString>

#include <chrono>

namespace tw {

struct TerminalSettings {
    // As the person typed it ("command").
    QString command;
    // From the end of one run to the start of the next ("interval", seconds); zero runs only
    // when clicked.
    std::chrono::seconds every{60};
    // The longest a run may take ("timeout", seconds).
    std::chrono::seconds timeout{10};
    // Where it runs ("directory"); blank is the home folder.
    QString directory;

    bool operator==(const TerminalSettings&) const = default;

    // Lenient: what cannot be read takes its default; the interval is at least `fewestSeconds`
    // and the time-out within 1…300 seconds.
    static TerminalSettings fromSettings(const WidgetSettings& settings);
    static constexpr int fewestSeconds = 2;
};

} // namespace tw
