// The machine's temperatures by what they stand for, and its fans, shared by every tile that
// shows them: one read every three seconds at most, however many ask.
#pragma once

#include "platform/SensorSource.h"
#include "readings/SensorSnapshot.h"
#include "readings/SharedSample.h"

namespace tw {

class SensorReader final : public SharedSample<SensorSnapshot> {
public:
    static constexpr std::chrono::milliseconds refreshInterval{3000};
    // Readings outside this open range are a sensor's error codes or an absent probe.
    static constexpr double lowestCelsius = 0;
    static constexpr double highestCelsius = 150;

    // `source` must outlive the runner's work.
    SensorReader(const SensorSource& source, SampleRunner& runner);

    // The kinds from the accepted values: the hottest die for the chip, the mean for battery and
    // storage; a kind without an accepted value is absent.
    static SensorSnapshot snapshotOf(const SensorSample& sample, const QDateTime& now);
    static bool isPlausible(double celsius);
};

} // namespace tw
