// Short sounds of the desktop's sound theme, each played once.
#pragma once

#include <QString>

namespace tw {

class SoundPlayer {
public:
    SoundPlayer() = default;
    virtual ~SoundPlayer() = default;
    Q_DISABLE_COPY_MOVE(SoundPlayer)

    // Plays the sound the program knows as `name` ("Glass", "Ping", "Tink", "Submarine", "Hero",
    // "Purr") once at `volume` (0 to 1) and returns at once; a sound the system lacks, or no way
    // to play at all, costs a line in the log.
    virtual void play(const QString& name, double volume) = 0;
};

} // namespace tw
