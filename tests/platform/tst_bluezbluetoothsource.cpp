#include "SessionBusMock.h"
#include "platform/linux/BluezBluetoothSource.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QSignalSpy>
#include <QTest>

namespace tw {

namespace {

const QString bluez = QStringLiteral("org.bluez");
const QString adapter = QStringLiteral("/org/bluez/hci0");
const QString mouseAddress = QStringLiteral("11:22:33:44:55:66");
const QString headsetAddress = QStringLiteral("AA:BB:CC:DD:EE:01");
const QString mouse = QStringLiteral("/org/bluez/hci0/dev_11_22_33_44_55_66");
const QString headset = QStringLiteral("/org/bluez/hci0/dev_AA_BB_CC_DD_EE_01");

bool call(const QString& path, const QString& interface, const QString& method,
          const QVariantList& arguments = {}) {
    return SessionBusMock::call(bluez, path, interface, method, arguments);
}

bool mock(const QString& method, const QVariantList& arguments) {
    return call(QStringLiteral("/"), QStringLiteral("org.bluez.Mock"), method, arguments);
}

bool set(const QString& path, const QString& interface, const QString& name,
         const QVariant& value) {
    return SessionBusMock::setProperty(bluez, path, interface, name, value);
}

BluetoothDevice device(const QString& address, const char* name, const char* icon, bool connected,
                       std::optional<int> battery) {
    return {.address = address,
            .name = QString::fromUtf8(name),
            .icon = QString::fromUtf8(icon),
            .connected = connected,
            .battery = battery};
}

} // namespace

char* toString(const BluetoothDevice& device) {
    return QTest::toString(
        QStringLiteral("%1 \"%2\" %3 %4 %5")
            .arg(device.address, device.name, device.icon,
                 device.connected ? QStringLiteral("connected") : QStringLiteral("apart"))
            .arg(device.battery.value_or(-1)));
}

// The real source against BlueZ served by python3-dbusmock's template on a private bus.
class TestBluezBluetoothSource : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        if (!m_bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(m_bus.skipReason()));
        }
    }
    void cleanup() { m_bus.stopServices(); }

    void noBluezIsUnavailable() {
        BluezBluetoothSource source(QDBusConnection::sessionBus());
        QTRY_VERIFY(source.findChildren<QDBusPendingCallWatcher*>().isEmpty());
        QVERIFY(!source.available());
        QVERIFY(source.devices().isEmpty());
    }

    void followsAdaptersAndPairedDevices() {
        QVERIFY(m_bus.startService(
            bluez, {QStringLiteral("--session"), QStringLiteral("-t"), QStringLiteral("bluez5")}));
        QVERIFY(
            mock(QStringLiteral("AddAdapter"), {QStringLiteral("hci0"), QStringLiteral("desk")}));
        QVERIFY(mock(QStringLiteral("AddDevice"),
                     {QStringLiteral("hci0"), mouseAddress, QStringLiteral("Mouse")}));
        QVERIFY(mock(QStringLiteral("PairDevice"), {QStringLiteral("hci0"), mouseAddress, 0x2580}));
        QVERIFY(set(mouse, QStringLiteral("org.bluez.Device1"), QStringLiteral("Icon"),
                    QStringLiteral("input-mouse")));
        // A battery known from the start comes with the first reading of the tree.
        QVERIFY(call(mouse, QStringLiteral("org.freedesktop.DBus.Mock"),
                     QStringLiteral("AddProperty"),
                     {QStringLiteral("org.bluez.Battery1"), QStringLiteral("Percentage"),
                      QVariant::fromValue(uchar(80))}));

        BluezBluetoothSource source(QDBusConnection::sessionBus());
        QSignalSpy changes(&source, &BluetoothSource::changed);
        QTRY_COMPARE(changes.count(), 1);
        QVERIFY(source.available());
        QCOMPARE(source.devices(), QList{device(mouseAddress, "Mouse", "input-mouse", false, 80)});

        // Unpaired devices are not listed; once paired and connected, they come first.
        QVERIFY(mock(QStringLiteral("AddDevice"),
                     {QStringLiteral("hci0"), headsetAddress, QStringLiteral("Headset")}));
        QVERIFY(set(mouse, QStringLiteral("org.bluez.Battery1"), QStringLiteral("Percentage"),
                    QVariant::fromValue(uchar(79))));
        QTRY_COMPARE(changes.count(), 2);
        QVERIFY(mock(QStringLiteral("PairDevice"), {QStringLiteral("hci0"), headsetAddress, 0}));
        QVERIFY(mock(QStringLiteral("ConnectDevice"), {QStringLiteral("hci0"), headsetAddress}));
        // Without an alias the name stands, so that is no change.
        QVERIFY(set(headset, QStringLiteral("org.bluez.Device1"), QStringLiteral("Alias"),
                    QStringLiteral("")));
        QVERIFY(set(headset, QStringLiteral("org.bluez.Device1"), QStringLiteral("Icon"),
                    QStringLiteral("audio-headset")));
        QTRY_COMPARE(changes.count(), 5);
        QCOMPARE(source.devices(),
                 (QList{device(headsetAddress, "Headset", "audio-headset", true, {}),
                        device(mouseAddress, "Mouse", "input-mouse", false, 79)}));

        QVERIFY(call(adapter, QStringLiteral("org.bluez.Adapter1"), QStringLiteral("RemoveDevice"),
                     {QVariant::fromValue(QDBusObjectPath(headset))}));
        QVERIFY(
            set(adapter, QStringLiteral("org.bluez.Adapter1"), QStringLiteral("Powered"), false));
        QTRY_VERIFY(!source.available());
        QCOMPARE(source.devices().size(), 1);

        // An adapter removed without its devices' removal being told takes them along.
        QVERIFY(mock(QStringLiteral("RemoveAdapter"), {QStringLiteral("hci0")}));
        QTRY_VERIFY(source.devices().isEmpty());
        QVERIFY(
            mock(QStringLiteral("AddAdapter"), {QStringLiteral("hci1"), QStringLiteral("desk")}));
        QTRY_VERIFY(source.available());
        m_bus.stopServices();
        QTRY_VERIFY(!source.available());
    }

private:
    SessionBusMock m_bus;
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestBluezBluetoothSource)
#include "tst_bluezbluetoothsource.moc"
