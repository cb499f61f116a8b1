// One tile's alarm: a sound played, and for the longer lengths played again every 1.15 seconds
// until its budget is spent or someone stops it.
#pragma once

#include "desk/AlarmLength.h"
#include "desk/WidgetSound.h"
#include "platform/ScheduledTask.h"

#include <QObject>

#include <chrono>

namespace tw {

class Clock;
class Scheduler;
class SoundPlayer;

class Alarm final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isRinging READ isRinging NOTIFY ringingChanged)
public:
    static constexpr std::chrono::milliseconds repeat{1150};

    Alarm(Scheduler& scheduler, const Clock& clock, SoundPlayer& sounds, QObject* parent = nullptr);

    bool isRinging() const { return m_ringing; }

    // Stops any ring, plays `sound`, and for a length beyond once keeps ringing.
    void start(WidgetSound sound, AlarmLength length);
    void stop();

Q_SIGNALS:
    void ringingChanged(bool ringing);

private:
    void again();
    void setRinging(bool ringing);

    Scheduler& m_scheduler;
    const Clock& m_clock;
    SoundPlayer& m_sounds;
    ScheduledTask m_task;
    WidgetSound m_sound = WidgetSound::none;
    std::chrono::nanoseconds m_began{};
    std::chrono::milliseconds m_budget{};
    bool m_ringing = false;
};

} // namespace tw
