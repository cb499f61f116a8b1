// The ambient sound tile's settings as values: which sound, how loud, the sleep timer; and the
// steps its buttons take through them.
#pragma once

#include "ambient/AmbientSound.h"
#include "model/WidgetInstance.h"

#include <chrono>

namespace tw {

struct AmbientSoundSettings {
    AmbientSound sound = AmbientSound::rain;
    // 0.1 to 1 in tenths.
    double volume = 0.5;
    std::chrono::minutes sleep{0};

    // Lenient: anything unreadable keeps its default, a volume is held between 10 and 100.
    static AmbientSoundSettings from(const WidgetSettings& settings);

    // The setting's words: "60" for the volume, "30" for the sleep timer.
    static QString volumeValue(double volume);
    // One tenth louder or quieter, never silent and never past full.
    static double stepped(double volume, int tenths);
    // The next of the sleep timer's lengths, after the longest off again.
    static std::chrono::minutes nextSleep(std::chrono::minutes sleep);

    bool operator==(const AmbientSoundSettings&) const = default;
};

} // namespace tw
