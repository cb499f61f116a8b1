// What a speed test tile shows: the phase, the live figures of a run and the history.
#pragma once

#include "speed/SpeedTestPhase.h"
#include "speed/SpeedTestResult.h"

#include <optional>

namespace tw {

struct SpeedTestBoard {
    SpeedTestPhase phase;
    // The smoothed rate of the direction being measured.
    double liveMbps = 0;
    // 0 to 1 over the whole run.
    double progress = 0;
    // The figures of the run in progress, else of the last result.
    std::optional<double> pingMs;
    std::optional<double> downMbps;
    std::optional<double> upMbps;
    // Oldest first.
    QList<SpeedTestResult> history;

    std::optional<SpeedTestResult> last() const {
        return history.isEmpty() ? std::nullopt : std::optional(history.last());
    }

    bool operator==(const SpeedTestBoard&) const = default;
};

} // namespace tw
