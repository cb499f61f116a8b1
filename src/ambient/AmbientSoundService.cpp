#include "ambient/AmbientSoundService.h"

#include "platform/Clock.h"
#include "platform/Scheduler.h"

#include <algorithm>

namespace tw {

AmbientSoundService::AmbientSoundService(LoopPlayer& player, const Clock& clock,
                                         Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_player(player)
    , m_clock(clock)
    , m_scheduler(scheduler) {
    connect(&m_player, &LoopPlayer::failed, this, &AmbientSoundService::fail);
}

float AmbientSoundService::gain() const {
    const double fade = m_sleep ? m_sleep->gainAt(m_clock.uptime()) : 1.0;
    return float(m_volume * m_volume * fade);
}

void AmbientSoundService::play() {
    if (m_playing) {
        return;
    }
    m_playing = true;
    m_problem.reset();
    if (m_sleepLength.count() > 0) {
        startSleepTimer();
    }
    m_player.play(m_sound, gain());
    Q_EMIT changed();
}

void AmbientSoundService::pause() {
    if (!m_playing) {
        return;
    }
    m_playing = false;
    stopSleepTimer();
    m_player.stop();
    Q_EMIT changed();
}

void AmbientSoundService::toggle() {
    if (m_playing) {
        pause();
    } else {
        play();
    }
}

void AmbientSoundService::setSound(AmbientSound sound) {
    if (sound == m_sound) {
        return;
    }
    m_sound = sound;
    if (m_playing) {
        m_player.play(m_sound, gain());
    }
    Q_EMIT changed();
}

void AmbientSoundService::setVolume(double volume) {
    const double clamped = std::clamp(volume, 0.0, 1.0);
    if (clamped == m_volume) {
        return;
    }
    m_volume = clamped;
    if (m_playing) {
        m_player.setGain(gain());
    }
    Q_EMIT changed();
}

void AmbientSoundService::setSleepLength(std::chrono::minutes length) {
    const auto sane = std::max(length, std::chrono::minutes(0));
    if (sane == m_sleepLength) {
        return;
    }
    m_sleepLength = sane;
    if (m_playing) {
        stopSleepTimer();
        if (m_sleepLength.count() > 0) {
            startSleepTimer();
        }
        m_player.setGain(gain());
    }
    Q_EMIT changed();
}

void AmbientSoundService::startSleepTimer() {
    const auto now = m_clock.uptime();
    m_sleep = SleepTimer(now, m_sleepLength);
    m_sleepEnds = m_clock.now().addSecs(
        std::chrono::duration_cast<std::chrono::seconds>(m_sleepLength).count());
    const auto untilFade =
        std::chrono::duration_cast<std::chrono::milliseconds>(m_sleep->fadeStartsAt() - now);
    m_sleepTask = m_scheduler.singleShot(untilFade, std::chrono::seconds(1), this, [this] {
        m_sleepTask = m_scheduler.repeating(fadeStep, std::chrono::milliseconds(50), this,
                                            [this] { stepFade(); });
    });
}

void AmbientSoundService::stopSleepTimer() {
    m_sleepTask.cancel();
    m_sleep.reset();
    m_sleepEnds.reset();
}

void AmbientSoundService::stepFade() {
    if (m_sleep && m_sleep->endedAt(m_clock.uptime())) {
        pause();
        return;
    }
    m_player.setGain(gain());
}

void AmbientSoundService::fail(LoopPlayer::Problem problem) {
    m_problem = problem;
    if (m_playing) {
        m_playing = false;
        stopSleepTimer();
    }
    Q_EMIT changed();
}

} // namespace tw
