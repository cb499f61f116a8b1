// Whether the desktop host can reach a display, asked before Qt is started: Qt ends the process
// with an abort when its platform cannot connect, so the question has to come first.
#pragma once

#include <QString>

#include <optional>

namespace tw::DisplayProbe {

// Why no display can be reached, as one sentence for a person; nullopt when one can, or when
// QT_QPA_PLATFORM names a platform that needs none (offscreen) and Qt is left to decide.
std::optional<QString> whyNoDisplay();
// The sentence for a host started where no display is set.
QString needsDisplay();

} // namespace tw::DisplayProbe
