#include "desk/Alarm.h"

#include "platform/Clock.h"
#include "platform/Scheduler.h"

namespace tw {

namespace {

constexpr std::chrono::milliseconds tolerance{50};

} // namespace

Alarm::Alarm(Scheduler& scheduler, const Clock& clock, SoundPlayer& sounds, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_clock(clock)
    , m_sounds(sounds) {}

void Alarm::start(WidgetSound sound, AlarmLength length) {
    m_task.cancel();
    play(sound, m_sounds);
    const auto ring = budget(length);
    if (!ring || sound == WidgetSound::none) {
        setRinging(false);
        return;
    }
    m_sound = sound;
    m_budget = *ring;
    m_began = m_clock.uptime();
    setRinging(true);
    m_task = m_scheduler.singleShot(repeat, tolerance, this, [this] { again(); });
}

void Alarm::stop() {
    m_task.cancel();
    setRinging(false);
}

void Alarm::again() {
    const auto elapsed = m_clock.uptime() - m_began;
    if (elapsed + repeat >= m_budget) {
        setRinging(false);
        return;
    }
    play(m_sound, m_sounds);
    m_task = m_scheduler.singleShot(repeat, tolerance, this, [this] { again(); });
}

void Alarm::setRinging(bool ringing) {
    if (ringing != m_ringing) {
        m_ringing = ringing;
        Q_EMIT ringingChanged(ringing);
    }
}

} // namespace tw
