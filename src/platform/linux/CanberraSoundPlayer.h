// Sounds of the freedesktop sound theme through libcanberra, which finds the theme's files and
// plays them on the desktop's sound server.
#pragma once

#include "platform/SoundPlayer.h"

#include <QString>

struct ca_context;

namespace tw {

class CanberraSoundPlayer final : public SoundPlayer {
public:
    CanberraSoundPlayer();
    ~CanberraSoundPlayer() override;

    void play(const QString& name, double volume) override;

    // The theme's event id for one of the program's sound names, "complete" for any other.
    static QString eventId(const QString& name);
    // Volume (0 to 1) as the decibels libcanberra takes; silence is far below anything heard.
    static double decibels(double volume);

private:
    ca_context* m_context = nullptr;
    bool m_failed = false;
};

} // namespace tw
