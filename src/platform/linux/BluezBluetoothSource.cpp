#include "platform/linux/BluezBluetoothSource.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

#include <algorithm>

namespace tw {

namespace {

const QString bluezService = QStringLiteral("org.bluez");
const QString objectManager = QStringLiteral("org.freedesktop.DBus.ObjectManager");
const QString adapterInterface = QStringLiteral("org.bluez.Adapter1");
const QString deviceInterface = QStringLiteral("org.bluez.Device1");
const QString batteryInterface = QStringLiteral("org.bluez.Battery1");

// Each reader checks the signature first: QDBusArgument reads anything else as garbage.
BluezBluetoothSource::Interfaces readInterfaces(const QDBusArgument& argument) {
    BluezBluetoothSource::Interfaces interfaces;
    argument.beginMap();
    while (!argument.atEnd()) {
        QString name;
        QVariantMap properties;
        argument.beginMapEntry();
        argument >> name >> properties;
        argument.endMapEntry();
        interfaces.insert(name, properties);
    }
    argument.endMap();
    return interfaces;
}

QMap<QString, BluezBluetoothSource::Interfaces> readObjects(const QDBusArgument& argument) {
    QMap<QString, BluezBluetoothSource::Interfaces> objects;
    if (argument.currentSignature() != QLatin1String("a{oa{sa{sv}}}")) {
        return objects;
    }
    argument.beginMap();
    while (!argument.atEnd()) {
        QDBusObjectPath path;
        argument.beginMapEntry();
        argument >> path;
        objects.insert(path.path(), readInterfaces(argument));
        argument.endMapEntry();
    }
    argument.endMap();
    return objects;
}

QString displayName(const QVariantMap& device) {
    for (const char* key : {"Alias", "Name", "Address"}) {
        const QString name = device.value(QLatin1String(key)).toString().trimmed();
        if (!name.isEmpty()) {
            return name;
        }
    }
    return {};
}

} // namespace

BluezBluetoothSource::BluezBluetoothSource(QDBusConnection bus, QObject* parent)
    : BluetoothSource(parent)
    , m_bus(std::move(bus)) {
    if (!m_bus.isConnected()) {
        return;
    }
    auto* watcher = new QDBusServiceWatcher(bluezService, m_bus,
                                            QDBusServiceWatcher::WatchForRegistration |
                                                QDBusServiceWatcher::WatchForUnregistration,
                                            this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &BluezBluetoothSource::fetch);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        m_objects.clear();
        update();
    });
    m_bus.connect(bluezService, QStringLiteral("/"), objectManager,
                  QStringLiteral("InterfacesAdded"), this, SLOT(onInterfacesAdded(QDBusMessage)));
    m_bus.connect(bluezService, QStringLiteral("/"), objectManager,
                  QStringLiteral("InterfacesRemoved"), this,
                  SLOT(onInterfacesRemoved(QDBusMessage)));
    // Every object's: no path means any path.
    m_bus.connect(bluezService, QString(), QStringLiteral("org.freedesktop.DBus.Properties"),
                  QStringLiteral("PropertiesChanged"), this,
                  SLOT(onPropertiesChanged(QDBusMessage)));
    fetch();
}

std::unique_ptr<BluezBluetoothSource> BluezBluetoothSource::create() {
    return std::make_unique<BluezBluetoothSource>(QDBusConnection::systemBus());
}

bool BluezBluetoothSource::available() const {
    return m_available;
}

QList<BluetoothDevice> BluezBluetoothSource::devices() const {
    return m_devices;
}

bool BluezBluetoothSource::anyAdapterPowered(const QMap<QString, Interfaces>& objects) {
    return std::any_of(objects.begin(), objects.end(), [](const Interfaces& interfaces) {
        return interfaces.value(adapterInterface).value(QStringLiteral("Powered")).toBool();
    });
}

QList<BluetoothDevice>
BluezBluetoothSource::pairedDevices(const QMap<QString, Interfaces>& objects) {
    QList<BluetoothDevice> devices;
    for (const Interfaces& interfaces : objects) {
        const auto device = interfaces.constFind(deviceInterface);
        if (device == interfaces.constEnd() || !device->value(QStringLiteral("Paired")).toBool()) {
            continue;
        }
        BluetoothDevice entry;
        entry.address = device->value(QStringLiteral("Address")).toString();
        entry.name = displayName(*device);
        entry.icon = device->value(QStringLiteral("Icon")).toString();
        entry.connected = device->value(QStringLiteral("Connected")).toBool();
        bool ok = false;
        const int percent =
            interfaces.value(batteryInterface).value(QStringLiteral("Percentage")).toInt(&ok);
        if (ok) {
            entry.battery = std::clamp(percent, 0, 100);
        }
        devices.append(entry);
    }
    std::stable_sort(devices.begin(), devices.end(),
                     [](const BluetoothDevice& a, const BluetoothDevice& b) {
                         if (a.connected != b.connected) {
                             return a.connected;
                         }
                         const int byName = a.name.compare(b.name, Qt::CaseInsensitive);
                         return byName != 0 ? byName < 0 : a.address < b.address;
                     });
    return devices;
}

void BluezBluetoothSource::fetch() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        bluezService, QStringLiteral("/"), objectManager, QStringLiteral("GetManagedObjects"));
    // The system starts BlueZ where there is Bluetooth; asking must not start it elsewhere.
    call.setAutoStartService(false);
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusMessage reply = finished->reply();
                m_objects.clear();
                if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
                    m_objects = readObjects(reply.arguments().constFirst().value<QDBusArgument>());
                }
                update();
            });
}

void BluezBluetoothSource::onInterfacesAdded(const QDBusMessage& message) {
    if (message.signature() != QLatin1String("oa{sa{sv}}")) {
        return;
    }
    const QString path = message.arguments().at(0).value<QDBusObjectPath>().path();
    const Interfaces added = readInterfaces(message.arguments().at(1).value<QDBusArgument>());
    Interfaces& interfaces = m_objects[path];
    for (auto it = added.begin(); it != added.end(); ++it) {
        interfaces.insert(it.key(), it.value());
    }
    update();
}

void BluezBluetoothSource::onInterfacesRemoved(const QDBusMessage& message) {
    if (message.signature() != QLatin1String("oas")) {
        return;
    }
    const QString path = message.arguments().at(0).value<QDBusObjectPath>().path();
    const QStringList removed = message.arguments().at(1).toStringList();
    const auto object = m_objects.find(path);
    if (object != m_objects.end()) {
        for (const QString& name : removed) {
            object->remove(name);
        }
        if (object->isEmpty()) {
            m_objects.erase(object);
        }
    }
    // An adapter that goes takes its devices along, whether or not their removal is told.
    if (removed.contains(adapterInterface)) {
        const QString prefix = path + QLatin1Char('/');
        m_objects.removeIf([&prefix](const auto& entry) { return entry.key().startsWith(prefix); });
    }
    update();
}

void BluezBluetoothSource::onPropertiesChanged(const QDBusMessage& message) {
    if (message.signature() != QLatin1String("sa{sv}as")) {
        return;
    }
    const auto object = m_objects.find(message.path());
    if (object == m_objects.end()) {
        return;
    }
    const QString name = message.arguments().at(0).toString();
    const auto interface = object->find(name);
    if (interface == object->end()) {
        return;
    }
    const auto changes = qdbus_cast<QVariantMap>(message.arguments().at(1));
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        interface->insert(it.key(), it.value());
    }
    for (const QString& key : message.arguments().at(2).toStringList()) {
        interface->remove(key);
    }
    update();
}

void BluezBluetoothSource::update() {
    const bool available = anyAdapterPowered(m_objects);
    QList<BluetoothDevice> devices = pairedDevices(m_objects);
    if (available == m_available && devices == m_devices) {
        return;
    }
    m_available = available;
    m_devices = std::move(devices);
    Q_EMIT changed();
}

} // namespace tw
