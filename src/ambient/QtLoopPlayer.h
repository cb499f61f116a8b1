// Plays the generated loops on the default sound output through Qt Multimedia, rendering and
// feeding them on a worker thread of its own; the device is open only while something plays.
#pragma once

#include "ambient/LoopPlayer.h"

#include <QThread>

#include <memory>

namespace tw {

class QtLoopPlayer : public LoopPlayer {
    Q_OBJECT
public:
    explicit QtLoopPlayer(QObject* parent = nullptr);
    ~QtLoopPlayer() override;

    void play(AmbientSound sound, float gain) override;
    void setGain(float gain) override;
    void stop() override;

    struct Engine;

private:
    QThread m_thread;
    // Lives on the worker thread, with the engine it owns.
    QObject* m_worker = nullptr;
    std::shared_ptr<Engine> m_engine;
};

} // namespace tw
