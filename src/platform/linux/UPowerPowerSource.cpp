#include "platform/linux/UPowerPowerSource.h"

#include "platform/QtScheduler.h"
#include "platform/linux/PowerSupply.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

const QString upowerService = QStringLiteral("org.freedesktop.UPower");
const QString upowerPath = QStringLiteral("/org/freedesktop/UPower");
const QString displayDevicePath = QStringLiteral("/org/freedesktop/UPower/devices/DisplayDevice");
const QString deviceInterface = QStringLiteral("org.freedesktop.UPower.Device");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString propertiesChanged = QStringLiteral("PropertiesChanged");
const QString onBatteryKey = QStringLiteral("OnBattery");
const QString activeProfileKey = QStringLiteral("ActiveProfile");

// The same daemon answers under its newer name, inside UPower's, and its first one; service,
// path and interface share the name.
struct ProfileService {
    QString name;
    QString path;
};
const ProfileService profileServices[2] = {
    {QStringLiteral("org.freedesktop.UPower.PowerProfiles"),
     QStringLiteral("/org/freedesktop/UPower/PowerProfiles")},
    {QStringLiteral("net.hadess.PowerProfiles"), QStringLiteral("/net/hadess/PowerProfiles")},
};

constexpr uint typeBattery = 2;
constexpr uint typeUps = 3;
constexpr uint stateCharging = 1;
constexpr qint64 longestEstimateSeconds = 7 * 24 * 3600;

// UPower says 0 for an estimate it does not have.
int minutesFromSeconds(const QVariant& value) {
    bool ok = false;
    const qint64 seconds = value.toLongLong(&ok);
    if (!ok || seconds <= 0 || seconds > longestEstimateSeconds) {
        return -1;
    }
    return std::max(1, static_cast<int>(std::lround(static_cast<double>(seconds) / 60)));
}

} // namespace

UPowerPowerSource::UPowerPowerSource(QDBusConnection bus, Scheduler& scheduler, QString sysRoot,
                                     QObject* parent)
    : PowerSource(parent)
    , m_bus(std::move(bus))
    , m_scheduler(scheduler)
    , m_sysRoot(std::move(sysRoot)) {
    start();
}

UPowerPowerSource::UPowerPowerSource(std::unique_ptr<Scheduler> scheduler, QString sysRoot)
    : m_ownScheduler(std::move(scheduler))
    , m_bus(QDBusConnection::systemBus())
    , m_scheduler(*m_ownScheduler)
    , m_sysRoot(std::move(sysRoot)) {
    start();
}

std::unique_ptr<UPowerPowerSource> UPowerPowerSource::create() {
    return std::unique_ptr<UPowerPowerSource>(
        new UPowerPowerSource(std::make_unique<QtScheduler>(), QStringLiteral("/sys")));
}

UPowerPowerSource::~UPowerPowerSource() = default;

BatterySnapshot UPowerPowerSource::battery() const {
    return m_battery;
}

bool UPowerPowerSource::lowPowerMode() const {
    return m_lowPower;
}

BatterySnapshot UPowerPowerSource::fromUPower(const QVariantMap& device, bool onBattery) {
    BatterySnapshot snapshot;
    const uint type = device.value(QStringLiteral("Type")).toUInt();
    if (!device.value(QStringLiteral("IsPresent")).toBool() ||
        (type != typeBattery && type != typeUps)) {
        return snapshot;
    }
    snapshot.hasBattery = true;
    bool ok = false;
    const double percent = device.value(QStringLiteral("Percentage")).toDouble(&ok);
    if (ok && std::isfinite(percent)) {
        snapshot.percent = static_cast<int>(std::clamp(std::round(percent), 0.0, 100.0));
    }
    snapshot.isCharging = device.value(QStringLiteral("State")).toUInt() == stateCharging;
    snapshot.isPluggedIn = !onBattery;
    snapshot.timeToEmpty = minutesFromSeconds(device.value(QStringLiteral("TimeToEmpty")));
    snapshot.timeToFull = minutesFromSeconds(device.value(QStringLiteral("TimeToFull")));
    return snapshot;
}

void UPowerPowerSource::start() {
    if (!m_bus.isConnected()) {
        useSysfs();
        return;
    }
    auto* upower = new QDBusServiceWatcher(upowerService, m_bus,
                                           QDBusServiceWatcher::WatchForRegistration |
                                               QDBusServiceWatcher::WatchForUnregistration,
                                           this);
    connect(upower, &QDBusServiceWatcher::serviceRegistered, this, &UPowerPowerSource::queryUPower);
    connect(upower, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        m_device.reset();
        useSysfs();
    });
    for (const QString& path : {upowerPath, displayDevicePath}) {
        m_bus.connect(upowerService, path, propertiesInterface, propertiesChanged, this,
                      SLOT(onPropertiesChanged(QDBusMessage)));
    }
    for (int which = 0; which < 2; ++which) {
        const ProfileService& service = profileServices[which];
        auto* watcher = new QDBusServiceWatcher(service.name, m_bus,
                                                QDBusServiceWatcher::WatchForRegistration |
                                                    QDBusServiceWatcher::WatchForUnregistration,
                                                this);
        connect(watcher, &QDBusServiceWatcher::serviceRegistered, this,
                [this, which] { queryProfile(which); });
        connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this, which] {
            m_profiles[which].reset();
            update();
        });
        m_bus.connect(service.name, service.path, propertiesInterface, propertiesChanged, this,
                      SLOT(onPropertiesChanged(QDBusMessage)));
        queryProfile(which);
    }
    queryUPower();
}

// OnBattery first, so that the device's first reading is told once and whole.
void UPowerPowerSource::queryUPower() {
    getAll(upowerService, upowerPath, upowerService, [this](std::optional<QVariantMap> main) {
        if (!main) {
            useSysfs();
            return;
        }
        m_onBattery = main->value(onBatteryKey).toBool();
        getAll(upowerService, displayDevicePath, deviceInterface,
               [this](std::optional<QVariantMap> device) {
                   if (!device) {
                       useSysfs();
                       return;
                   }
                   m_sysfsTimer.cancel();
                   m_device = std::move(*device);
                   update();
               });
    });
}

void UPowerPowerSource::queryProfile(int which) {
    const ProfileService& service = profileServices[which];
    getAll(service.name, service.path, service.name,
           [this, which](std::optional<QVariantMap> properties) {
               if (properties && properties->contains(activeProfileKey)) {
                   m_profiles[which] = properties->value(activeProfileKey).toString();
                   update();
               }
           });
}

void UPowerPowerSource::getAll(const QString& service, const QString& path,
                               const QString& interface,
                               std::function<void(std::optional<QVariantMap>)> done) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, propertiesInterface,
                                                       QStringLiteral("GetAll"));
    call << interface;
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [done = std::move(done)](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<QVariantMap> reply = *finished;
                done(reply.isError() ? std::nullopt : std::optional(reply.value()));
            });
}

void UPowerPowerSource::onPropertiesChanged(const QDBusMessage& message) {
    if (message.signature() != QLatin1String("sa{sv}as")) {
        return;
    }
    const QVariantList arguments = message.arguments();
    const QString interface = arguments.at(0).toString();
    const auto changes = qdbus_cast<QVariantMap>(arguments.at(1));
    const QString path = message.path();
    if (path == displayDevicePath && interface == deviceInterface) {
        if (!m_device) {
            return;
        }
        for (auto it = changes.begin(); it != changes.end(); ++it) {
            m_device->insert(it.key(), it.value());
        }
    } else if (path == upowerPath && interface == upowerService) {
        if (changes.contains(onBatteryKey)) {
            m_onBattery = changes.value(onBatteryKey).toBool();
        }
    } else {
        for (int which = 0; which < 2; ++which) {
            const ProfileService& service = profileServices[which];
            if (path == service.path && interface == service.name &&
                changes.contains(activeProfileKey)) {
                m_profiles[which] = changes.value(activeProfileKey).toString();
            }
        }
    }
    update();
}

void UPowerPowerSource::useSysfs() {
    if (!m_sysfsTimer.isActive()) {
        m_sysfsTimer = m_scheduler.repeating(sysfsInterval, std::chrono::seconds(10), this,
                                             [this] { readSysfs(); });
    }
    readSysfs();
}

void UPowerPowerSource::readSysfs() {
    m_sysfsBattery = batteryFromSupplies(PowerSupply::readAll(m_sysRoot));
    update();
}

void UPowerPowerSource::update() {
    const BatterySnapshot battery = m_device ? fromUPower(*m_device, m_onBattery) : m_sysfsBattery;
    const QString profile = m_profiles[0] ? *m_profiles[0] : m_profiles[1].value_or(QString());
    const bool lowPower = profile == QLatin1String("power-saver");
    if (battery == m_battery && lowPower == m_lowPower) {
        return;
    }
    m_battery = battery;
    m_lowPower = lowPower;
    Q_EMIT changed();
}

} // namespace tw
