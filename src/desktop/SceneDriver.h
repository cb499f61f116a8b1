// The frames of one tile's animated scene: a repeating timer at the rate the panel's pace allows,
// and a scene time that stands still while the rate is 0, so the scene goes on from the frame
// where it stopped.
#pragma once

#include "platform/ScheduledTask.h"
#include "tick/SceneClock.h"

#include <QObject>

#include <functional>

namespace tw {

class Clock;
class Scheduler;

class SceneDriver final : public QObject {
    Q_OBJECT
public:
    // `frame` gets the scene time in seconds, once per frame. Scheduler and clock must outlive
    // the driver.
    SceneDriver(Scheduler& scheduler, const Clock& clock, std::function<void(double)> frame,
                QObject* parent = nullptr);

    // Frames per second; 0 (or less) stops the timer and the scene time with it.
    void setRate(double fps);
    double rate() const { return m_rate; }
    double sceneTime() const { return m_time; }

private:
    SceneClock::Seconds uptime() const;

    Scheduler& m_scheduler;
    const Clock& m_clock;
    std::function<void(double)> m_frame;
    SceneClock m_sceneClock;
    ScheduledTask m_task;
    double m_rate = 0;
    double m_time = 0;
};

} // namespace tw
