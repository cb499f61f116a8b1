// UPower and the power profiles daemon served by python3-dbusmock on a private session bus, with
// the machine's battery and power profile set as a test needs them.
#pragma once

#include "SessionBusMock.h"

namespace tw::test {

class PowerServicesMock {
public:
    // The battery as UPower's display device shows the batteries as one.
    struct Battery {
        double percent = 0;
        bool onBattery = false;
        // False on a machine without one.
        bool present = true;
        qint64 secondsToEmpty = 0;
        qint64 secondsToFull = 0;
    };

    // Needs the bus's address set, so build it after `bus`.
    explicit PowerServicesMock(SessionBusMock& bus)
        : m_bus(bus) {}

    bool start(const Battery& battery) {
        return m_bus.startService(upower, {QStringLiteral("--session"), QStringLiteral("-t"),
                                           QStringLiteral("upower")}) &&
               m_bus.startService(profiles, {QStringLiteral("--session"), QStringLiteral("-t"),
                                             QStringLiteral("power_profiles_daemon")}) &&
               setBattery(battery);
    }

    // Each property is set on its own and announced, as the real daemon does.
    bool setBattery(const Battery& battery) {
        constexpr uint typeBattery = 2;
        constexpr uint stateDischarging = 2;
        constexpr uint stateCharging = 1;
        return setDevice(QStringLiteral("Type"), battery.present ? typeBattery : 0U) &&
               setDevice(QStringLiteral("State"),
                         battery.onBattery ? stateDischarging : stateCharging) &&
               setDevice(QStringLiteral("IsPresent"), battery.present) &&
               setDevice(QStringLiteral("Percentage"), battery.percent) &&
               setDevice(QStringLiteral("TimeToEmpty"), battery.secondsToEmpty) &&
               setDevice(QStringLiteral("TimeToFull"), battery.secondsToFull) &&
               setOnBattery(battery.onBattery);
    }
    bool setDevice(const QString& name, const QVariant& value) {
        return SessionBusMock::setProperty(
            upower, QStringLiteral("/org/freedesktop/UPower/devices/DisplayDevice"),
            QStringLiteral("org.freedesktop.UPower.Device"), name, value);
    }
    bool setOnBattery(bool onBattery) {
        return SessionBusMock::setProperty(upower, QStringLiteral("/org/freedesktop/UPower"),
                                           upower, QStringLiteral("OnBattery"), onBattery);
    }
    // "power-saver", "balanced" or "performance".
    bool setProfile(const QString& profile) {
        return SessionBusMock::setProperty(profiles, QStringLiteral("/net/hadess/PowerProfiles"),
                                           profiles, QStringLiteral("ActiveProfile"), profile);
    }

private:
    static inline const QString upower = QStringLiteral("org.freedesktop.UPower");
    static inline const QString profiles = QStringLiteral("net.hadess.PowerProfiles");

    SessionBusMock& m_bus;
};

} // namespace tw::test
