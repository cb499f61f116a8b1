// The machine's power: the battery as the system last announced it, and its own power-saving
// state. Reading is cheap and never waits; `changed` says when to read again.
#pragma once

#include <QObject>

namespace tw {

// -1 in `percent`, `timeToEmpty` or `timeToFull` (minutes) means unknown.
struct BatterySnapshot {
    int percent = -1;
    bool isCharging = false;
    bool isPluggedIn = true;
    bool hasBattery = false;
    int timeToEmpty = -1;
    int timeToFull = -1;
    bool operator==(const BatterySnapshot&) const = default;
};

class PowerSource : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // A machine without a battery reads as plugged in with `hasBattery` false.
    virtual BatterySnapshot battery() const = 0;
    // The system's own low-power setting is on.
    virtual bool lowPowerMode() const = 0;

Q_SIGNALS:
    // The battery or the low-power setting may have changed.
    void changed();
};

} // namespace tw
