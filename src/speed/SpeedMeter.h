// The figures of one measuring direction from polls of (seconds since the start, bytes moved):
// the running result after the warm-up and the smoothed live needle.
#pragma once

#include <QtGlobal>

#include <deque>
#include <optional>

namespace tw {

class SpeedMeter {
public:
    // Connections open and windows grow in the first second: it never counts.
    static constexpr double warmUp = 1.0;
    // How long after the baseline the running result first shows.
    static constexpr double settle = 0.15;
    // The live rate is taken over at least this many seconds.
    static constexpr double liveWindow = 0.2;
    // The share of the distance to a new rate the needle moves per poll.
    static constexpr double smoothing = 0.35;

    void poll(double seconds, qint64 bytes);

    // Mbit/s since the baseline; absent until it settles.
    std::optional<double> result() const { return m_result; }
    double liveMbps() const { return m_live; }

    static double mbps(qint64 bytes, double seconds) {
        return static_cast<double>(bytes) * 8.0 / seconds / 1'000'000.0;
    }

private:
    struct Sample {
        double seconds;
        qint64 bytes;
    };

    std::optional<Sample> m_baseline;
    std::optional<double> m_result;
    std::deque<Sample> m_samples;
    double m_live = 0;
};

} // namespace tw
