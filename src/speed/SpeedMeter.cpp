#include "speed/SpeedMeter.h"

namespace tw {

void SpeedMeter::poll(double seconds, qint64 bytes) {
    // A baseline without bytes (a slow first answer) is taken again at the next poll, so that a
    // slow start is not measured as a line without speed; the time is counted from the baseline.
    if (seconds >= warmUp && (!m_baseline || m_baseline->bytes < 2)) {
        m_baseline = Sample{seconds, bytes};
    }
    if (m_baseline && m_baseline->bytes >= 2 && seconds >= m_baseline->seconds + settle) {
        m_result = mbps(bytes - m_baseline->bytes, seconds - m_baseline->seconds);
    }

    m_samples.push_back({seconds, bytes});
    while (m_samples.size() > 1 && seconds - m_samples[1].seconds > liveWindow) {
        m_samples.pop_front();
    }
    const Sample& oldest = m_samples.front();
    if (seconds - oldest.seconds > liveWindow) {
        m_live += (mbps(bytes - oldest.bytes, seconds - oldest.seconds) - m_live) * smoothing;
    }
}

} // namespace tw
