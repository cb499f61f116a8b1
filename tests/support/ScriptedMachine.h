// The machine's power and the process's counters as a test sets them, for machines that have no
// battery to drain and processes whose cost a test must choose.
#pragma once

#include "platform/PowerSource.h"
#include "platform/ProcessUsage.h"

namespace tw::test {

class ScriptedPower final : public PowerSource {
public:
    BatterySnapshot battery() const override {
        ++reads;
        return state;
    }
    bool lowPowerMode() const override { return lowPower; }
    // Takes the new state and announces it, as the system would.
    void announce(const BatterySnapshot& next, bool low = false) {
        state = next;
        lowPower = low;
        Q_EMIT changed();
    }
    static BatterySnapshot onBattery(int percent) {
        return {.percent = percent, .isPluggedIn = false, .hasBattery = true};
    }

    BatterySnapshot state;
    bool lowPower = false;
    mutable int reads = 0;
};

class ScriptedUsage final : public ProcessUsage {
public:
    std::chrono::nanoseconds processorTime() const override { return processor; }
    qint64 residentBytes() const override { return resident; }

    std::chrono::nanoseconds processor{std::chrono::seconds(5)};
    qint64 resident = 0;
};

} // namespace tw::test
