// Paired Bluetooth devices from BlueZ on the system bus: its object tree read once with
// GetManagedObjects, then followed through InterfacesAdded, InterfacesRemoved and
// PropertiesChanged, so reading never waits.
#pragma once

#include "platform/BluetoothSource.h"

#include <QDBusConnection>
#include <QMap>
#include <QVariantMap>

#include <memory>

class QDBusArgument;
class QDBusMessage;

namespace tw {

class BluezBluetoothSource final : public BluetoothSource {
    Q_OBJECT
public:
    // Asks the bus at once, without waiting for the answer.
    explicit BluezBluetoothSource(QDBusConnection bus, QObject* parent = nullptr);
    // On the system bus.
    static std::unique_ptr<BluezBluetoothSource> create();

    bool available() const override;
    QList<BluetoothDevice> devices() const override;

    // Interface name → its properties, of one object.
    using Interfaces = QMap<QString, QVariantMap>;
    // The adapters decide `available`; paired devices are listed, connected ones first.
    static bool anyAdapterPowered(const QMap<QString, Interfaces>& objects);
    static QList<BluetoothDevice> pairedDevices(const QMap<QString, Interfaces>& objects);

private Q_SLOTS:
    void onInterfacesAdded(const QDBusMessage& message);
    void onInterfacesRemoved(const QDBusMessage& message);
    void onPropertiesChanged(const QDBusMessage& message);

private:
    void fetch();
    void update();

    QDBusConnection m_bus;
    // Object path → its interfaces, as BlueZ last told them.
    QMap<QString, Interfaces> m_objects;
    bool m_available = false;
    QList<BluetoothDevice> m_devices;
};

} // namespace tw
