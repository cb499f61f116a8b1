// The machine's power from UPower's display device (the batteries as one), falling back to
// /sys/class/power_supply read on a slow timer where UPower is not running; the low-power
// setting is the power profile "power-saver". Every call is asynchronous: reading never waits.
#pragma once

#include "platform/PowerSource.h"
#include "platform/ScheduledTask.h"
#include "platform/Scheduler.h"

#include <QDBusConnection>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <optional>

class QDBusMessage;
class QDBusServiceWatcher;

namespace tw {

class UPowerPowerSource final : public PowerSource {
    Q_OBJECT
public:
    // Asks the bus at once, without waiting for answers; `sysRoot` is "/sys" but for tests.
    UPowerPowerSource(QDBusConnection bus, Scheduler& scheduler, QString sysRoot,
                      QObject* parent = nullptr);
    // On the system bus, with its own timers.
    static std::unique_ptr<UPowerPowerSource> create();
    ~UPowerPowerSource() override;

    BatterySnapshot battery() const override;
    bool lowPowerMode() const override;

    // UPower's display device properties and its OnBattery, as a snapshot.
    static BatterySnapshot fromUPower(const QVariantMap& device, bool onBattery);

    static constexpr Scheduler::Duration sysfsInterval = std::chrono::seconds(30);

private Q_SLOTS:
    void onPropertiesChanged(const QDBusMessage& message);

private:
    UPowerPowerSource(std::unique_ptr<Scheduler> scheduler, QString sysRoot);
    void start();
    void queryUPower();
    void queryProfile(int which);
    void getAll(const QString& service, const QString& path, const QString& interface,
                std::function<void(std::optional<QVariantMap>)> done);
    void useSysfs();
    void readSysfs();
    void update();

    std::unique_ptr<Scheduler> m_ownScheduler;
    QDBusConnection m_bus;
    Scheduler& m_scheduler;
    QString m_sysRoot;

    std::optional<QVariantMap> m_device;
    bool m_onBattery = false;
    BatterySnapshot m_sysfsBattery;
    ScheduledTask m_sysfsTimer;
    // The active profile under each of the two service names, newer first.
    std::optional<QString> m_profiles[2];

    BatterySnapshot m_battery;
    bool m_lowPower = false;
};

} // namespace tw
