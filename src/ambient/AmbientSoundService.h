// The ambient sound that plays: which, how loud, for how long; it drives a LoopPlayer and fades
// out at the end of a sleep timer. The tile's settings choose; playing is never remembered, so a
// restart is quiet.
#pragma once

#include "ambient/AmbientSound.h"
#include "ambient/LoopPlayer.h"
#include "ambient/SleepTimer.h"
#include "platform/ScheduledTask.h"

#include <QDateTime>
#include <QObject>

#include <chrono>
#include <optional>

namespace tw {

class Clock;
class Scheduler;

class AmbientSoundService : public QObject {
    Q_OBJECT
public:
    // How often the gain steps during a fade; the player glides between steps.
    static constexpr std::chrono::milliseconds fadeStep{250};

    AmbientSoundService(LoopPlayer& player, const Clock& clock, Scheduler& scheduler,
                        QObject* parent = nullptr);

    bool isPlaying() const { return m_playing; }
    AmbientSound sound() const { return m_sound; }
    // 0 to 1, as the person set it.
    double volume() const { return m_volume; }
    std::chrono::minutes sleepLength() const { return m_sleepLength; }
    // When a running sleep timer ends, on the wall clock; nullopt without one.
    std::optional<QDateTime> sleepEnds() const { return m_sleepEnds; }
    // Why the last play stopped on its own; nullopt while nothing went wrong since.
    std::optional<LoopPlayer::Problem> problem() const { return m_problem; }
    // The gain handed to the player: volume, heard evenly, times the sleep timer's fade.
    float gain() const;

    void play();
    void pause();
    void toggle();
    void setSound(AmbientSound sound);
    void setVolume(double volume);
    // Zero: no sleep timer. While playing, a new length starts counting now.
    void setSleepLength(std::chrono::minutes length);

Q_SIGNALS:
    void changed();

private:
    void startSleepTimer();
    void stopSleepTimer();
    void stepFade();
    void fail(LoopPlayer::Problem problem);

    LoopPlayer& m_player;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    bool m_playing = false;
    AmbientSound m_sound = AmbientSound::rain;
    double m_volume = 0.5;
    std::chrono::minutes m_sleepLength{0};
    std::optional<SleepTimer> m_sleep;
    std::optional<QDateTime> m_sleepEnds;
    std::optional<LoopPlayer::Problem> m_problem;
    ScheduledTask m_sleepTask;
};

} // namespace tw
