// A loop player that opens no device at all: what runs under TKW_SILENT and in pictures.
#pragma once

#include "ambient/LoopPlayer.h"

namespace tw {

class SilentLoopPlayer : public LoopPlayer {
    Q_OBJECT
public:
    using LoopPlayer::LoopPlayer;
    void play(AmbientSound, float) override {}
    void setGain(float) override {}
    void stop() override {}
};

} // namespace tw
