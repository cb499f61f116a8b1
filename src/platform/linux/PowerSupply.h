// One entry of /sys/class/power_supply as the kernel describes it, and the machine's battery
// made of them: the reading used where UPower is not running.
#pragma once

#include "platform/PowerSource.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace tw {

struct PowerSupply {
    // "Battery", "Mains", "USB", "UPS", …
    QString type;
    // "Device" for the battery of a mouse or a headset, which does not power this machine.
    QString scope;
    // "Charging", "Discharging", "Full", "Not charging", "Unknown".
    QString status;
    std::optional<bool> online;
    std::optional<bool> present;
    std::optional<qint64> capacity;
    // µWh and µW, or µAh and µA where the battery counts charge instead of energy.
    std::optional<qint64> energyNow;
    std::optional<qint64> energyFull;
    std::optional<qint64> powerNow;
    std::optional<qint64> chargeNow;
    std::optional<qint64> chargeFull;
    std::optional<qint64> currentNow;
    bool operator==(const PowerSupply&) const = default;

    // From its attribute files; `file` gives the bytes of one by name, or none.
    static PowerSupply fromFiles(const std::function<std::optional<QByteArray>(const char*)>& file);
    // Every entry under "<sysRoot>/class/power_supply".
    static QList<PowerSupply> readAll(const QString& sysRoot);
};

// The machine's battery from its supplies: the batteries that power it taken together; plugged
// in when a mains or USB supply is online, or, with none reported, when no battery discharges.
BatterySnapshot batteryFromSupplies(const QList<PowerSupply>& supplies);

} // namespace tw
