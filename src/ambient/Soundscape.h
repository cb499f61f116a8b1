// The ambient sounds, generated: a loop of each, mono, that plays on into itself without a seam.
#pragma once

#include "ambient/AmbientSound.h"

#include <QtGlobal>

#include <vector>

namespace tw {

struct LoopRecipe {
    int sampleRate = 48000;
    double seconds = 20;
    quint32 seed = 1;
};

namespace Soundscape {

// The loudness every sound is brought to (root mean square), and the peak none exceeds.
inline constexpr float level = 0.16f;
inline constexpr float peak = 0.9f;

// A loop of `sound` of `recipe.seconds` (at least one), its last sample running on into its first.
std::vector<float> render(AmbientSound sound, const LoopRecipe& recipe);

// Folds the part of `samples` after `length` back over the head, fading in what was there, so
// that `length - 1` runs on into 0; the tail must be no longer than the head.
std::vector<float> closeLoop(std::vector<float> samples, qsizetype length);

} // namespace Soundscape

} // namespace tw
