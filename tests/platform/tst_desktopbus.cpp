// The desktop's services on a private session bus, served by python3-dbusmock: the portal's colour
// scheme, notifications, UPower and the power profiles (and the power_supply trees in a temporary
// directory it falls back to), BlueZ's adapters and devices, and GeoClue's fixes.
#include "ManualScheduler.h"
#include "PowerServicesMock.h"
#include "SessionBusMock.h"
#include "SysfsTree.h"
#include "TestRows.h"
#include "platform/linux/BluezBluetoothSource.h"
#include "platform/linux/FreedesktopNotifications.h"
#include "platform/linux/GeoClueLocationSource.h"
#include "platform/linux/LinuxUserPresence.h"
#include "platform/linux/PortalColorScheme.h"
#include "platform/linux/UPowerPowerSource.h"
#include "platform/null/FixedDisplays.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QGuiApplication>
#include <QPalette>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

Q_DECLARE_METATYPE(tw::ColorScheme)
Q_DECLARE_METATYPE(tw::BatterySnapshot)
Q_DECLARE_METATYPE(tw::test::PowerServicesMock::Battery)

namespace tw {

namespace {

using Authorization = LocationSource::Authorization;
using Battery = test::PowerServicesMock::Battery;
using Failure = LocationSource::Failure;

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");

QDBusMessage mockCall(const QString& method, const QVariantList& arguments) {
    return SessionBusMock::mockCall(portal, portalPath, method, arguments);
}

void setPaletteDark(bool dark) {
    QPalette palette = QGuiApplication::palette();
    palette.setColor(QPalette::Window, dark ? QColor(30, 30, 30) : QColor(240, 240, 240));
    QGuiApplication::setPalette(palette);
}

const QString mockInterface = QStringLiteral("org.freedesktop.DBus.Mock");

constexpr auto call = &SessionBusMock::call;
constexpr auto setRemote = &SessionBusMock::setProperty;

BatterySnapshot snapshot(int percent, bool charging, bool pluggedIn, int toEmpty, int toFull) {
    return {.percent = percent,
            .isCharging = charging,
            .isPluggedIn = pluggedIn,
            .hasBattery = true,
            .timeToEmpty = toEmpty,
            .timeToFull = toFull};
}

// Waits until the source has had every answer it asked for.
void settle(const UPowerPowerSource& source) {
    QTRY_VERIFY(source.findChildren<QDBusPendingCallWatcher*>().isEmpty());
}

const QString bluez = QStringLiteral("org.bluez");
const QString adapter = QStringLiteral("/org/bluez/hci0");
const QString mouseAddress = QStringLiteral("11:22:33:44:55:66");
const QString headsetAddress = QStringLiteral("AA:BB:CC:DD:EE:01");
const QString mouse = QStringLiteral("/org/bluez/hci0/dev_11_22_33_44_55_66");
const QString headset = QStringLiteral("/org/bluez/hci0/dev_AA_BB_CC_DD_EE_01");

bool bluezCall(const QString& path, const QString& interface, const QString& method,
               const QVariantList& arguments = {}) {
    return SessionBusMock::call(bluez, path, interface, method, arguments);
}

bool bluezMock(const QString& method, const QVariantList& arguments) {
    return bluezCall(QStringLiteral("/"), QStringLiteral("org.bluez.Mock"), method, arguments);
}

bool bluezSet(const QString& path, const QString& interface, const QString& name,
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

const QString geoclue = QStringLiteral("org.freedesktop.GeoClue2");
const QString manager = QStringLiteral("/org/freedesktop/GeoClue2/Manager");
const QString client = QStringLiteral("/org/freedesktop/GeoClue2/Client/1");
const QString clientInterface = QStringLiteral("org.freedesktop.GeoClue2.Client");

// GeoClue on the private bus: a manager whose GetClient hands out one client; the client's Start
// asks the agent, which grants or refuses.
bool startGeoClue(SessionBusMock& bus, bool grants) {
    if (!bus.startService(geoclue, {QStringLiteral("--session"), geoclue, manager,
                                    QStringLiteral("org.freedesktop.GeoClue2.Manager")})) {
        return false;
    }
    const QString start =
        grants ? QStringLiteral("self.Set('%1', 'Active', True)").arg(clientInterface)
               : QStringLiteral("raise dbus.exceptions.DBusException('disallowed by the agent', "
                                "name='org.freedesktop.DBus.Error.AccessDenied')");
    return SessionBusMock::mockCall(geoclue, manager, QStringLiteral("AddMethod"),
                                    {QString(), QStringLiteral("GetClient"), QString(),
                                     QStringLiteral("o"), QStringLiteral("ret = '%1'").arg(client)})
                   .type() == QDBusMessage::ReplyMessage &&
           SessionBusMock::addObject(
               geoclue, manager, client, clientInterface,
               {{QStringLiteral("DesktopId"), QString()},
                {QStringLiteral("RequestedAccuracyLevel"), 0U},
                {QStringLiteral("DistanceThreshold"), 0U},
                {QStringLiteral("Active"), false},
                {QStringLiteral("Location"), QVariant::fromValue(QDBusObjectPath("/"))}},
               {{QStringLiteral("Start"), QString(), QString(), start},
                {QStringLiteral("Stop"), QString(), QString(),
                 QStringLiteral("self.Set('%1', 'Active', False)").arg(clientInterface)}});
}

QVariant clientProperty(const QString& name) {
    QDBusMessage get = QDBusMessage::createMethodCall(
        geoclue, client, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << clientInterface << name;
    const QDBusMessage reply = QDBusConnection::sessionBus().call(get);
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

bool active() {
    return clientProperty(QStringLiteral("Active")).toBool();
}

// A new Location object, announced as GeoClue does.
bool moveTo(double latitude, double longitude) {
    static int count = 0;
    const QString location = QStringLiteral("/org/freedesktop/GeoClue2/Location/%1").arg(++count);
    return SessionBusMock::addObject(geoclue, manager, location,
                                     QStringLiteral("org.freedesktop.GeoClue2.Location"),
                                     {{QStringLiteral("Latitude"), latitude},
                                      {QStringLiteral("Longitude"), longitude},
                                      {QStringLiteral("Accuracy"), 5000.0}},
                                     {}) &&
           SessionBusMock::mockCall(geoclue, client, QStringLiteral("EmitSignal"),
                                    {clientInterface, QStringLiteral("LocationUpdated"),
                                     QStringLiteral("oo"),
                                     QVariantList{QVariant::fromValue(QDBusObjectPath("/")),
                                                  QVariant::fromValue(QDBusObjectPath(location))}})
                   .type() == QDBusMessage::ReplyMessage;
}

void settle(const GeoClueLocationSource& source) {
    QTRY_VERIFY(source.findChildren<QDBusPendingCallWatcher*>().isEmpty());
}

} // namespace

char* toString(const BluetoothDevice& device) {
    return QTest::toString(
        QStringLiteral("%1 \"%2\" %3 %4 %5")
            .arg(device.address, device.name, device.icon,
                 device.connected ? QStringLiteral("connected") : QStringLiteral("apart"))
            .arg(device.battery.value_or(-1)));
}

class TestDesktopBus : public QObject {
    Q_OBJECT

    // Summary and body of every Notify call the mocked server received.
    static QStringList notified() {
        const QDBusMessage reply =
            SessionBusMock::mockCall(QStringLiteral("org.freedesktop.Notifications"),
                                     QStringLiteral("/org/freedesktop/Notifications"),
                                     QStringLiteral("GetMethodCalls"), {QStringLiteral("Notify")});
        QStringList lines;
        if (reply.type() != QDBusMessage::ReplyMessage) {
            return {reply.errorMessage()};
        }
        // a(tav): a time stamp and the arguments of each call.
        const auto calls = reply.arguments().value(0).value<QDBusArgument>();
        calls.beginArray();
        while (!calls.atEnd()) {
            quint64 stamp = 0;
            QVariantList arguments;
            calls.beginStructure();
            calls >> stamp >> arguments;
            calls.endStructure();
            lines.append(arguments.value(3).toString() + QLatin1String(" | ") +
                         arguments.value(4).toString());
        }
        calls.endArray();
        return lines;
    }

    // A portal whose Settings interface has `method` ("ReadOne" or "Read") answering with the
    // Python expression `value`; an empty method leaves the bus without a portal.
    bool startPortal(const QString& method, const QString& value) {
        if (method.isEmpty()) {
            return true;
        }
        if (!m_bus.startService(portal, {portal, portalPath, settings})) {
            return false;
        }
        const QDBusMessage reply =
            mockCall(QStringLiteral("AddMethod"),
                     {settings, method, QStringLiteral("ss"), QStringLiteral("v"),
                      QString(QStringLiteral("ret = ") + value)});
        return reply.type() == QDBusMessage::ReplyMessage;
    }

    static void emitSettingChanged(const QString& key, uint value) {
        mockCall(QStringLiteral("EmitSignal"),
                 {settings, QStringLiteral("SettingChanged"), QStringLiteral("ssv"),
                  QVariantList{QStringLiteral("org.freedesktop.appearance"), key,
                               QVariant::fromValue(value)}});
    }

    // Lets the watcher ask the portal, once the event loop runs, and waits for the answer: the
    // pending call it keeps goes once answered.
    static void settlePortal(const PortalColorScheme& watcher) {
        QCoreApplication::processEvents();
        QVERIFY(!watcher.findChildren<QDBusPendingCallWatcher*>().isEmpty());
        QTRY_VERIFY(watcher.findChildren<QDBusPendingCallWatcher*>().isEmpty());
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_sys.isValid());
        if (!m_bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(m_bus.skipReason()));
        }
    }
    void cleanup() { m_bus.stopServices(); }

    void firstReading_data() {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("paletteDark");
        QTest::addColumn<ColorScheme>("expected");
        using test::row;
        row("dark over a light palette", "ReadOne", "dbus.UInt32(1)", false, ColorScheme::Dark);
        row("light over a dark palette", "ReadOne", "dbus.UInt32(2)", true, ColorScheme::Light);
        row("an older portal wraps the value twice", "Read", "dbus.UInt32(1, variant_level=2)",
            false, ColorScheme::Dark);
        row("no preference: the palette", "ReadOne", "dbus.UInt32(0)", true, ColorScheme::Dark);
        row("a value of another type: the palette", "ReadOne", "'dark'", false, ColorScheme::Light);
        row("no portal: the palette", "", "", true, ColorScheme::Dark);
    }
    void firstReading() {
        QFETCH(QString, method);
        QFETCH(QString, value);
        QFETCH(bool, paletteDark);
        setPaletteDark(paletteDark);
        QVERIFY(startPortal(method, value));
        PortalColorScheme watcher;
        settlePortal(watcher);
        QTEST(watcher.colorScheme(), "expected");
    }

    void followsTheDesktopAsItChanges() {
        setPaletteDark(false);
        QVERIFY(startPortal(QStringLiteral("ReadOne"), QStringLiteral("dbus.UInt32(2)")));
        PortalColorScheme watcher;
        QSignalSpy changes(&watcher, &ColorSchemeWatcher::colorSchemeChanged);
        settlePortal(watcher);
        QCOMPARE(watcher.colorScheme(), ColorScheme::Light);

        emitSettingChanged(QStringLiteral("accent-color"), 1);
        emitSettingChanged(QStringLiteral("color-scheme"), 1);
        QTRY_COMPARE_WITH_TIMEOUT(changes.count(), 1, 5000);
        QCOMPARE(changes.first().first().value<ColorScheme>(), ColorScheme::Dark);

        // The portal's word outranks the palette until it says it has no preference.
        setPaletteDark(false);
        QCOMPARE(watcher.colorScheme(), ColorScheme::Dark);
        emitSettingChanged(QStringLiteral("color-scheme"), 0);
        QTRY_COMPARE_WITH_TIMEOUT(watcher.colorScheme(), ColorScheme::Light, 5000);
        setPaletteDark(true);
        QCOMPARE(watcher.colorScheme(), ColorScheme::Dark);
        QCOMPARE(changes.count(), 3);
    }

    void aMessageReachesTheServer() {
        QVERIFY(m_bus.startService(
            QStringLiteral("org.freedesktop.Notifications"),
            {QStringLiteral("--template"), QStringLiteral("notification_daemon")}));
        FreedesktopNotifications notifications;
        notifications.notify(QStringLiteral("Nothing opens calendars"),
                             QStringLiteral("Install a calendar app."));
        QTRY_COMPARE_WITH_TIMEOUT(
            notified(),
            QStringList{QStringLiteral("Nothing opens calendars | Install a calendar app.")}, 5000);
    }

    void noServerCostsOneLogLine() {
        static QStringList logged;
        const QtMessageHandler previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { logged.append(text); });
        FreedesktopNotifications notifications;
        notifications.notify(QStringLiteral("Lost"), QString());
        QTRY_COMPARE_WITH_TIMEOUT(logged.size(), 1, 5000);
        qInstallMessageHandler(previous);
        QVERIFY2(logged.first().startsWith(QLatin1String("could not show \"Lost\": ")),
                 qPrintable(logged.first()));
    }

    void displayDevice_data() {
        QTest::addColumn<Battery>("battery");
        QTest::addColumn<BatterySnapshot>("expected");
        using test::row;
        row("mains only: no battery", Battery{0, false, false}, BatterySnapshot{});
        row("discharging at 20 %", Battery{20, true, true, 5400, 0},
            snapshot(20, false, false, 90, -1));
        row("discharging at 21 %, rounded", Battery{20.6, true, true, 20, 0},
            snapshot(21, false, false, 1, -1));
        row("charging, with time to full", Battery{57.4, false, true, 0, 2730},
            snapshot(57, true, true, -1, 46));
    }
    void displayDevice() {
        QFETCH(Battery, battery);
        QVERIFY(m_services.start(battery));
        UPowerPowerSource source(QDBusConnection::sessionBus(), m_scheduler, m_sys.path());
        settle(source);
        QTEST(source.battery(), "expected");
    }

    void followsUPowerThenFallsBackToSysfs() {
        QVERIFY(m_services.start({50, true, true, 3600}));
        UPowerPowerSource source(QDBusConnection::sessionBus(), m_scheduler, m_sys.path());
        settle(source);
        QSignalSpy changes(&source, &PowerSource::changed);

        // The same value again is no change; the time after it is.
        QVERIFY(m_services.setDevice(QStringLiteral("Percentage"), 49.0));
        QVERIFY(m_services.setDevice(QStringLiteral("Percentage"), 49.0));
        QVERIFY(m_services.setDevice(QStringLiteral("TimeToEmpty"), qint64(1800)));
        QTRY_COMPARE(changes.count(), 2);
        QCOMPARE(source.battery(), snapshot(49, false, false, 30, -1));

        QVERIFY(test::writeSysfsTree(m_sys.path(),
                                     {QStringLiteral("class/power_supply/BAT0/type=Battery"),
                                      QStringLiteral("class/power_supply/BAT0/capacity=77"),
                                      QStringLiteral("class/power_supply/BAT0/status=Charging")}));
        m_bus.stopServices();
        QTRY_COMPARE(source.battery().percent, 77);
        QVERIFY(source.battery().isCharging);
        QCOMPARE(m_scheduler.pendingCount(), 1);
        QVERIFY(QDir(m_sys.filePath(QStringLiteral("class"))).removeRecursively());
    }

    // The profiles under UPower's name; the daemon's own name is followed in the power watcher's
    // tests.
    void lowPowerModeFollowsTheProfile() {
        const QString service = QStringLiteral("org.freedesktop.UPower.PowerProfiles");
        const QString path = QStringLiteral("/org/freedesktop/UPower/PowerProfiles");
        const QString profile = QStringLiteral("ActiveProfile");
        QVERIFY(m_bus.startService(service, {QStringLiteral("--session"), service, path, service}));
        // A mock without a template has no properties until given one.
        QVERIFY(call(service, path, mockInterface, QStringLiteral("AddProperty"),
                     {service, profile, QStringLiteral("balanced")}));
        UPowerPowerSource source(QDBusConnection::sessionBus(), m_scheduler, m_sys.path());
        settle(source);
        QVERIFY(!source.lowPowerMode());
        QSignalSpy changes(&source, &PowerSource::changed);

        QVERIFY(setRemote(service, path, service, profile, QStringLiteral("power-saver")));
        QTRY_VERIFY(source.lowPowerMode());
        QVERIFY(setRemote(service, path, service, profile, QStringLiteral("performance")));
        QTRY_VERIFY(!source.lowPowerMode());
        QCOMPARE(changes.count(), 2);
    }

    void sysfs_data() {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<BatterySnapshot>("expected");
        using test::row;
        const auto files = [](std::initializer_list<const char*> lines) {
            QStringList result;
            for (const char* line : lines) {
                result.append(QString(QStringLiteral("class/power_supply/") + QLatin1String(line)));
            }
            return result;
        };
        row("mains only", files({"AC/type=Mains", "AC/online=1"}), BatterySnapshot{});
        row("discharging, by energy",
            files({"AC/type=Mains", "AC/online=0", "BAT0/type=Battery", "BAT0/status=Discharging",
                   "BAT0/capacity=41", "BAT0/energy_now=20000000", "BAT0/energy_full=50000000",
                   "BAT0/power_now=10000000"}),
            snapshot(40, false, false, 120, -1));
        row("charging, by charge, the current signed",
            files({"USB0/type=USB", "USB0/online=1", "BAT0/type=Battery", "BAT0/status=Charging",
                   "BAT0/charge_now=3000000", "BAT0/charge_full=4000000",
                   "BAT0/current_now=-2000000"}),
            snapshot(75, true, true, -1, 30));
        row("two batteries as one",
            files({"BAT0/type=Battery", "BAT0/status=Discharging", "BAT0/energy_now=10000000",
                   "BAT0/energy_full=20000000", "BAT0/power_now=4000000", "BAT1/type=Battery",
                   "BAT1/status=Unknown", "BAT1/energy_now=30000000", "BAT1/energy_full=40000000",
                   "BAT1/power_now=6000000"}),
            snapshot(67, false, false, 240, -1));
        row("capacity alone, the energy unreadable, past 100",
            files({"BAT0/type=Battery", "BAT0/status=Full", "BAT0/capacity=104",
                   "BAT0/energy_now=<unreadable>", "BAT0/energy_full=garbage"}),
            snapshot(100, false, true, -1, -1));
        row("a mouse's battery and an empty bay",
            files({"hid-mouse/type=Battery", "hid-mouse/scope=Device", "hid-mouse/capacity=10",
                   "BAT1/type=Battery", "BAT1/present=0", "BAT1/status=Discharging"}),
            BatterySnapshot{});
        row("an idle rate gives no estimate",
            files({"BAT0/type=Battery", "BAT0/status=Discharging", "BAT0/energy_now=50000000",
                   "BAT0/energy_full=50000000", "BAT0/power_now=1"}),
            snapshot(100, false, false, -1, -1));
    }
    void sysfs() {
        QFETCH(QStringList, files);
        QTemporaryDir sys;
        QVERIFY(test::writeSysfsTree(sys.path(), files));
        // A bus that is not there leads to the files at once.
        test::ManualScheduler scheduler;
        UPowerPowerSource source(QDBusConnection(QStringLiteral("no bus")), scheduler, sys.path());
        QTEST(source.battery(), "expected");
    }

    void sysfsIsReadAgainOnItsTimer() {
        QTemporaryDir sys;
        const QString capacity = QStringLiteral("class/power_supply/BAT0/capacity=");
        QVERIFY(test::writeSysfsTree(sys.path(),
                                     {QStringLiteral("class/power_supply/BAT0/type=Battery"),
                                      capacity + QLatin1String("30")}));
        test::ManualScheduler scheduler;
        UPowerPowerSource source(QDBusConnection(QStringLiteral("no bus")), scheduler, sys.path());
        QSignalSpy changes(&source, &PowerSource::changed);
        QVERIFY(test::writeSysfsTree(sys.path(), {capacity + QLatin1String("29")}));
        scheduler.advance(UPowerPowerSource::sysfsInterval - std::chrono::milliseconds(1));
        QCOMPARE(source.battery().percent, 30);
        scheduler.advance(std::chrono::milliseconds(1));
        QCOMPARE(source.battery().percent, 29);
        scheduler.advance(UPowerPowerSource::sysfsInterval * 3);
        QCOMPARE(changes.count(), 1);
    }

    void noBluezIsUnavailable() {
        BluezBluetoothSource source(QDBusConnection::sessionBus());
        QTRY_VERIFY(source.findChildren<QDBusPendingCallWatcher*>().isEmpty());
        QVERIFY(!source.available());
        QVERIFY(source.devices().isEmpty());
    }

    void followsAdaptersAndPairedDevices() {
        QVERIFY(m_bus.startService(
            bluez, {QStringLiteral("--session"), QStringLiteral("-t"), QStringLiteral("bluez5")}));
        QVERIFY(bluezMock(QStringLiteral("AddAdapter"),
                          {QStringLiteral("hci0"), QStringLiteral("desk")}));
        QVERIFY(bluezMock(QStringLiteral("AddDevice"),
                          {QStringLiteral("hci0"), mouseAddress, QStringLiteral("Mouse")}));
        QVERIFY(bluezMock(QStringLiteral("PairDevice"),
                          {QStringLiteral("hci0"), mouseAddress, 0x2580}));
        QVERIFY(bluezSet(mouse, QStringLiteral("org.bluez.Device1"), QStringLiteral("Icon"),
                         QStringLiteral("input-mouse")));
        // A battery known from the start comes with the first reading of the tree.
        QVERIFY(bluezCall(mouse, QStringLiteral("org.freedesktop.DBus.Mock"),
                          QStringLiteral("AddProperty"),
                          {QStringLiteral("org.bluez.Battery1"), QStringLiteral("Percentage"),
                           QVariant::fromValue(uchar(80))}));

        BluezBluetoothSource source(QDBusConnection::sessionBus());
        QSignalSpy changes(&source, &BluetoothSource::changed);
        QTRY_COMPARE(changes.count(), 1);
        QVERIFY(source.available());
        QCOMPARE(source.devices(), QList{device(mouseAddress, "Mouse", "input-mouse", false, 80)});

        // Unpaired devices are not listed; once paired and connected, they come first.
        QVERIFY(bluezMock(QStringLiteral("AddDevice"),
                          {QStringLiteral("hci0"), headsetAddress, QStringLiteral("Headset")}));
        QVERIFY(bluezSet(mouse, QStringLiteral("org.bluez.Battery1"), QStringLiteral("Percentage"),
                         QVariant::fromValue(uchar(79))));
        QTRY_COMPARE(changes.count(), 2);
        QVERIFY(
            bluezMock(QStringLiteral("PairDevice"), {QStringLiteral("hci0"), headsetAddress, 0}));
        QVERIFY(
            bluezMock(QStringLiteral("ConnectDevice"), {QStringLiteral("hci0"), headsetAddress}));
        // Without an alias the name stands, so that is no change.
        QVERIFY(bluezSet(headset, QStringLiteral("org.bluez.Device1"), QStringLiteral("Alias"),
                         QStringLiteral("")));
        QVERIFY(bluezSet(headset, QStringLiteral("org.bluez.Device1"), QStringLiteral("Icon"),
                         QStringLiteral("audio-headset")));
        QTRY_COMPARE(changes.count(), 5);
        QCOMPARE(source.devices(),
                 (QList{device(headsetAddress, "Headset", "audio-headset", true, {}),
                        device(mouseAddress, "Mouse", "input-mouse", false, 79)}));

        QVERIFY(bluezCall(adapter, QStringLiteral("org.bluez.Adapter1"),
                          QStringLiteral("RemoveDevice"),
                          {QVariant::fromValue(QDBusObjectPath(headset))}));
        QVERIFY(bluezSet(adapter, QStringLiteral("org.bluez.Adapter1"), QStringLiteral("Powered"),
                         false));
        QTRY_VERIFY(!source.available());
        QCOMPARE(source.devices().size(), 1);

        // An adapter removed without its devices' removal being told takes them along.
        QVERIFY(bluezMock(QStringLiteral("RemoveAdapter"), {QStringLiteral("hci0")}));
        QTRY_VERIFY(source.devices().isEmpty());
        QVERIFY(bluezMock(QStringLiteral("AddAdapter"),
                          {QStringLiteral("hci1"), QStringLiteral("desk")}));
        QTRY_VERIFY(source.available());
        m_bus.stopServices();
        QTRY_VERIFY(!source.available());
    }

    void requestLocation_data() {
        QTest::addColumn<bool>("served");
        QTest::addColumn<bool>("grants");
        // NaN: GeoClue never finds the place.
        QTest::addColumn<double>("latitude");
        // -1: resolved.
        QTest::addColumn<int>("failure");
        QTest::addColumn<Authorization>("authorization");
        using test::row;
        const double none = std::nan("");
        row("a fix", true, true, 52.52, -1, Authorization::authorized);
        row("a place off the globe is no fix", true, true, 123.0, int(Failure::locationUnknown),
            Authorization::authorized);
        row("no fix in time", true, true, none, int(Failure::locationUnknown),
            Authorization::authorized);
        row("refused by the agent", true, false, none, int(Failure::denied), Authorization::denied);
        row("GeoClue absent", false, false, none, int(Failure::other), Authorization::restricted);
    }
    void requestLocation() {
        QFETCH(bool, served);
        QFETCH(bool, grants);
        QFETCH(double, latitude);
        QFETCH(int, failure);
        QFETCH(Authorization, authorization);
        if (served) {
            QVERIFY(startGeoClue(m_bus, grants));
        }
        test::ManualScheduler scheduler;
        GeoClueLocationSource source(QDBusConnection::sessionBus(), scheduler);
        QCOMPARE(source.authorization(), Authorization::notDetermined);
        QSignalSpy resolved(&source, &LocationSource::locationResolved);
        QSignalSpy failed(&source, &LocationSource::locationFailed);
        QSignalSpy authorizations(&source, &LocationSource::authorizationChanged);

        source.requestLocation();
        if (grants) {
            QTRY_VERIFY(active());
            QCOMPARE(clientProperty(QStringLiteral("DesktopId")),
                     QVariant(QStringLiteral("com.tarnwick.Tarnwick")));
            // City accuracy; both as the unsigned integers GeoClue's properties are, since it
            // refuses any other type.
            const QVariant accuracy = clientProperty(QStringLiteral("RequestedAccuracyLevel"));
            const QVariant threshold = clientProperty(QStringLiteral("DistanceThreshold"));
            QCOMPARE(accuracy.typeId(), QMetaType::UInt);
            QCOMPARE(threshold.typeId(), QMetaType::UInt);
            QCOMPARE(accuracy.toUInt(), 4U);
            QCOMPARE(threshold.toUInt(), GeoClueLocationSource::distanceThreshold);
            if (!std::isnan(latitude)) {
                QVERIFY(moveTo(latitude, 13.405));
            }
        }
        settle(source);
        if (failure == int(Failure::locationUnknown)) {
            scheduler.advance(GeoClueLocationSource::fixTimeout);
        }
        QTRY_COMPARE(resolved.count() + failed.count(), 1);
        if (failure < 0) {
            QCOMPARE(resolved.first(), (QVariantList{latitude, 13.405}));
        } else {
            QCOMPARE(failed.first().first().value<Failure>(), Failure(failure));
        }
        QCOMPARE(source.authorization(), authorization);
        QCOMPARE(authorizations.count(), 1);
        // Nobody waits any more: the client is stopped.
        QTRY_VERIFY(!active());

        // Asked again, the answer comes even when nothing changed.
        source.requestAuthorization();
        QTRY_COMPARE(authorizations.count(), 2);
        QCOMPARE(authorizations.last().first().value<Authorization>(), authorization);
        settle(source);
        QVERIFY(!active());
        QCOMPARE(resolved.count() + failed.count(), 1);
    }

    void updatesFollowUntilStoppedOrGeoClueLeaves() {
        QVERIFY(startGeoClue(m_bus, true));
        test::ManualScheduler scheduler;
        GeoClueLocationSource source(QDBusConnection::sessionBus(), scheduler);
        QSignalSpy resolved(&source, &LocationSource::locationResolved);
        QSignalSpy failed(&source, &LocationSource::locationFailed);

        source.startUpdatingLocation();
        QTRY_VERIFY(active());
        QVERIFY(moveTo(48.1351, 11.582));
        QTRY_COMPARE(resolved.count(), 1);
        QVERIFY(moveTo(48.2, 11.6));
        QTRY_COMPARE(resolved.count(), 2);
        QCOMPARE(resolved.last(), (QVariantList{48.2, 11.6}));
        // Updates have no deadline of their own.
        scheduler.advance(GeoClueLocationSource::fixTimeout * 2);
        QVERIFY(active());

        source.stopUpdatingLocation();
        QTRY_VERIFY(!active());
        QVERIFY(moveTo(1, 2));
        settle(source);
        QCOMPARE(resolved.count(), 2);
        QCOMPARE(failed.count(), 0);

        // GeoClue leaving ends the updates; once back, a new start follows it again.
        source.startUpdatingLocation();
        QTRY_VERIFY(active());
        settle(source);
        m_bus.stopServices();
        QTRY_COMPARE(failed.count(), 1);
        QCOMPARE(failed.last().first().value<Failure>(), Failure::other);
        QVERIFY(startGeoClue(m_bus, true));
        source.startUpdatingLocation();
        QTRY_VERIFY(active());
        QVERIFY(moveTo(-33.87, 151.21));
        QTRY_COMPARE(resolved.count(), 3);
        QCOMPARE(resolved.last(), (QVariantList{-33.87, 151.21}));
    }

    void presenceFollowsTheLoginSession() {
        const QString login = QStringLiteral("org.freedesktop.login1");
        const QString manager = QStringLiteral("/org/freedesktop/login1");
        const QString session = QStringLiteral("/org/freedesktop/login1/session/c1");
        const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
        QVERIFY(m_bus.startService(
            login, {QStringLiteral("--session"), QStringLiteral("-t"), QStringLiteral("logind")}));
        QCOMPARE(SessionBusMock::mockCall(login, manager, QStringLiteral("AddSession"),
                                          {QStringLiteral("c1"), QStringLiteral("seat0"), 1000U,
                                           QStringLiteral("robin"), true})
                     .type(),
                 QDBusMessage::ReplyMessage);
        // Found through the session the environment names.
        qputenv("XDG_SESSION_ID", "c1");
        test::ManualClock clock;
        FixedDisplays displays;
        LinuxUserPresence presence({.x11 = nullptr,
                                    .logind = QDBusConnection::sessionBus(),
                                    .session = {},
                                    .clock = clock,
                                    .displays = &displays});
        qunsetenv("XDG_SESSION_ID");
        const auto update = [&](const QVariantMap& properties) {
            SessionBusMock::mockCall(login, session, QStringLiteral("UpdateProperties"),
                                     {sessionInterface, properties});
        };
        const auto sleep = [&](bool start) {
            SessionBusMock::mockCall(login, manager, QStringLiteral("EmitSignal"),
                                     {QStringLiteral("org.freedesktop.login1.Manager"),
                                      QStringLiteral("PrepareForSleep"), QStringLiteral("b"),
                                      QVariantList{start}});
        };
        const QList<std::pair<std::function<void()>, bool>> steps{
            {[&] { call(login, session, sessionInterface, QStringLiteral("Lock"), {}); }, true},
            {[&] { call(login, session, sessionInterface, QStringLiteral("Unlock"), {}); }, false},
            {[&] {
                 update({{QStringLiteral("LockedHint"), true}});
             },
             true},
            {[&] {
                 update({{QStringLiteral("LockedHint"), false}});
             },
             false},
            {[&] {
                 update({{QStringLiteral("Active"), false}});
             },
             true},
            {[&] {
                 update({{QStringLiteral("Active"), true}});
             },
             false},
            {[&] { sleep(true); }, true},
            {[&] { sleep(false); }, false},
            {[&] { Q_EMIT displays.screensDidSleep(); }, true},
            {[&] { Q_EMIT displays.screensDidWake(); }, false},
        };
        QSignalSpy changes(&presence, &UserPresence::awayChanged);
        // The session's properties are read first; nothing is away yet.
        QTest::qWait(200);
        QVERIFY(!presence.isAway());
        for (const auto& [step, away] : steps) {
            step();
            QTRY_COMPARE(presence.isAway(), away);
        }
        QCOMPARE(changes.count(), steps.size());
        // Without an X server the session's idle hint tells how long input has been away.
        QCOMPARE(presence.idleSeconds(), 0.0);
        const auto since = static_cast<qulonglong>(clock.now().toMSecsSinceEpoch() - 400000) * 1000;
        update({{QStringLiteral("IdleHint"), true},
                {QStringLiteral("IdleSinceHint"), QVariant::fromValue(since)}});
        QTRY_COMPARE(presence.idleSeconds(), 400.0);
    }

private:
    SessionBusMock m_bus;
    test::PowerServicesMock m_services{m_bus};
    test::ManualScheduler m_scheduler;
    QTemporaryDir m_sys;
};

} // namespace tw

QTEST_MAIN(tw::TestDesktopBus)
#include "tst_desktopbus.moc"
