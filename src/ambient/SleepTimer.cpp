#include "ambient/SleepTimer.h"

#include <algorithm>

namespace tw {

SleepTimer::SleepTimer(Time startedAt, std::chrono::minutes length) {
    const Time span = std::max<Time>(length, Time::zero());
    m_endsAt = startedAt + span;
    m_fadeStartsAt = m_endsAt - std::min<Time>(longestFade, span / 2);
}

double SleepTimer::gainAt(Time at) const {
    if (at <= m_fadeStartsAt) {
        return at >= m_endsAt ? 0.0 : 1.0;
    }
    if (at >= m_endsAt) {
        return 0.0;
    }
    const double left =
        double((m_endsAt - at).count()) / double((m_endsAt - m_fadeStartsAt).count());
    // Loudness follows the square of the gain roughly, so a squared ramp falls evenly to the ear.
    return left * left;
}

} // namespace tw
