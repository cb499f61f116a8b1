#include "tick/SceneClock.h"

#include <algorithm>
#include <cmath>

namespace tw {

SceneClock::Seconds SceneClock::time(Seconds now, Paused paused, std::optional<Seconds> pinned) {
    if (pinned) {
        return *pinned;
    }
    if (paused == Paused::Yes) {
        // Forgetting the last wall time makes the first call after a pause add nothing.
        m_lastWall.reset();
        return m_accumulated;
    }
    if (!std::isfinite(now.count())) {
        return m_accumulated;
    }
    if (m_lastWall) {
        m_accumulated += std::clamp(now - *m_lastWall, Seconds(0), maxStep);
    }
    m_lastWall = now;
    return m_accumulated;
}

} // namespace tw
