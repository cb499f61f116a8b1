// Where the generated loops are heard: the sound device, or nowhere for silent runs.
#pragma once

#include "ambient/AmbientSound.h"

#include <QObject>

namespace tw {

class LoopPlayer : public QObject {
    Q_OBJECT
public:
    enum class Problem { noDevice, deviceLost };

    using QObject::QObject;

    // Starts `sound` looping at `gain` (0 to 1), or crossfades to it while another plays.
    virtual void play(AmbientSound sound, float gain) = 0;
    // Glides to `gain` without a click.
    virtual void setGain(float gain) = 0;
    // Fades out at once and lets go of the device.
    virtual void stop() = 0;

Q_SIGNALS:
    // The sound stopped on its own: no output to play on, or the one it played on went away.
    void failed(tw::LoopPlayer::Problem problem);
};

} // namespace tw
