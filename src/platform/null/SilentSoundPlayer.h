// Sounds that make no noise and remember what they were asked to play: tests, pictures and
// $TKW_SILENT.
#pragma once

#include "platform/SoundPlayer.h"

#include <QStringList>

namespace tw {

class SilentSoundPlayer final : public SoundPlayer {
public:
    void play(const QString& name, double volume) override {
        Q_UNUSED(volume)
        m_played.append(name);
    }
    const QStringList& played() const { return m_played; }

private:
    QStringList m_played;
};

} // namespace tw
