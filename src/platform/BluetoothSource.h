// The Bluetooth devices paired with this machine and the charge their batteries report.
#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <optional>

namespace tw {

struct BluetoothDevice {
    QString address;
    QString name;
    // The freedesktop icon name of its kind, e.g. "input-mouse" or "audio-headset"; empty when
    // the device does not say.
    QString icon;
    bool connected = false;
    // Percent; none when the device reports no battery.
    std::optional<int> battery;
    bool operator==(const BluetoothDevice&) const = default;
};

class BluetoothSource : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // False when the machine has no Bluetooth, or it is off, or its service is not running.
    virtual bool available() const = 0;
    // Paired devices, connected ones first; the last state announced, so reading never waits.
    virtual QList<BluetoothDevice> devices() const = 0;

Q_SIGNALS:
    void changed();
};

} // namespace tw
