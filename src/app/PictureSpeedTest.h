// The speed test for a picture drawn without the host: the face's sample results, or a moment of
// a run.
#pragma once

#include "model/WidgetInstance.h"
#include "speed/SpeedTestBoard.h"

namespace tw {

// The sample history with its last result on show; the settings' "state" picks another moment:
// "ping", "download" or "upload" (a run that far along, its needle moving), "failed" (a run that
// lost its line, over the sample history) or "never" (nothing measured yet).
SpeedTestBoard pictureSpeedTest(const WidgetSettings& settings);

} // namespace tw
