#include "desktop/SceneDriver.h"

#include "platform/Clock.h"
#include "platform/Scheduler.h"

#include <algorithm>
#include <cmath>

namespace tw {

SceneDriver::SceneDriver(Scheduler& scheduler, const Clock& clock,
                         std::function<void(double)> frame, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_clock(clock)
    , m_frame(std::move(frame)) {}

SceneClock::Seconds SceneDriver::uptime() const {
    // Uptime, not wall time: a clock set back must not run a scene backwards.
    return std::chrono::duration_cast<SceneClock::Seconds>(m_clock.uptime());
}

void SceneDriver::setRate(double fps) {
    const double rate = std::isfinite(fps) ? std::max(0.0, fps) : 0.0;
    if (rate == m_rate) {
        return;
    }
    m_rate = rate;
    m_task.cancel();
    if (rate == 0) {
        m_time = m_sceneClock.time(uptime(), SceneClock::Paused::Yes).count();
        return;
    }
    // Marks where the scene takes up again; the first frame adds only the time since.
    m_time = m_sceneClock.time(uptime(), SceneClock::Paused::No).count();
    const auto interval =
        std::max(Scheduler::Duration(1), Scheduler::Duration(std::lround(1000.0 / rate)));
    m_task = m_scheduler.repeating(interval, interval / 4, this, [this] {
        m_time = m_sceneClock.time(uptime(), SceneClock::Paused::No).count();
        m_frame(m_time);
    });
}

} // namespace tw
