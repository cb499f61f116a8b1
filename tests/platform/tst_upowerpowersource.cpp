#include "ManualScheduler.h"
#include "SessionBusMock.h"
#include "SysfsTree.h"
#include "TestRows.h"
#include "platform/linux/UPowerPowerSource.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(tw::BatterySnapshot)

namespace tw {

namespace {

const QString upower = QStringLiteral("org.freedesktop.UPower");
const QString displayDevicePath = QStringLiteral("/org/freedesktop/UPower/devices/DisplayDevice");
const QString deviceInterface = QStringLiteral("org.freedesktop.UPower.Device");
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

} // namespace

// The real source against UPower and the power profiles daemon served by python3-dbusmock on a
// private bus, and against power_supply trees in a temporary directory.
class TestUPowerPowerSource : public QObject {
    Q_OBJECT

    bool startUPower() {
        return m_bus.startService(
            upower, {QStringLiteral("--session"), QStringLiteral("-t"), QStringLiteral("upower")});
    }
    // Type, state, percentage, seconds to empty and to full, present; and OnBattery.
    static bool setupDisplayDevice(const QVariantList& device, bool onBattery) {
        const QVariantList arguments{
            device.value(0), device.value(1), device.value(2), device.value(2), 100.0, 10.0,
            device.value(3), device.value(4), device.value(5), QString(),       1U};
        return call(upower, QStringLiteral("/org/freedesktop/UPower"), mockInterface,
                    QStringLiteral("SetupDisplayDevice"), arguments) &&
               setRemote(upower, QStringLiteral("/org/freedesktop/UPower"), upower,
                         QStringLiteral("OnBattery"), onBattery);
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_sys.isValid());
        if (!m_bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(m_bus.skipReason()));
        }
    }
    void cleanup() { m_bus.stopServices(); }

    void displayDevice_data() {
        QTest::addColumn<QVariantList>("device");
        QTest::addColumn<bool>("onBattery");
        QTest::addColumn<BatterySnapshot>("expected");
        using test::row;
        const auto device = [](uint type, uint state, double percent, qint64 toEmpty, qint64 toFull,
                               bool present) {
            return QVariantList{type, state, percent, toEmpty, toFull, present};
        };
        row("mains only: no battery", device(0, 0, 0, 0, 0, false), false, BatterySnapshot{});
        row("discharging at 20 %", device(2, 2, 20, 5400, 0, true), true,
            snapshot(20, false, false, 90, -1));
        row("discharging at 21 %, rounded", device(2, 2, 20.6, 20, 0, true), true,
            snapshot(21, false, false, 1, -1));
        row("charging, with time to full", device(2, 1, 57.4, 0, 2730, true), false,
            snapshot(57, true, true, -1, 46));
    }
    void displayDevice() {
        QFETCH(QVariantList, device);
        QFETCH(bool, onBattery);
        QVERIFY(startUPower());
        QVERIFY(setupDisplayDevice(device, onBattery));
        UPowerPowerSource source(QDBusConnection::sessionBus(), m_scheduler, m_sys.path());
        settle(source);
        QTEST(source.battery(), "expected");
    }

    void followsUPowerThenFallsBackToSysfs() {
        QVERIFY(startUPower());
        QVERIFY(setupDisplayDevice({2U, 2U, 50.0, qint64(3600), qint64(0), true}, true));
        UPowerPowerSource source(QDBusConnection::sessionBus(), m_scheduler, m_sys.path());
        settle(source);
        QSignalSpy changes(&source, &PowerSource::changed);

        QVERIFY(setRemote(upower, displayDevicePath, deviceInterface, QStringLiteral("Percentage"),
                          49.0));
        // The same value again is no change; the time after it is.
        QVERIFY(setRemote(upower, displayDevicePath, deviceInterface, QStringLiteral("Percentage"),
                          49.0));
        QVERIFY(setRemote(upower, displayDevicePath, deviceInterface, QStringLiteral("TimeToEmpty"),
                          QVariant::fromValue(qint64(1800))));
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

    void lowPowerMode_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("service");
        QTest::addColumn<QString>("path");
        using test::row;
        row("power-profiles-daemon",
            QStringList{QStringLiteral("--session"), QStringLiteral("-t"),
                        QStringLiteral("power_profiles_daemon")},
            "net.hadess.PowerProfiles", "/net/hadess/PowerProfiles");
        row("UPower's power profiles",
            QStringList{QStringLiteral("--session"),
                        QStringLiteral("org.freedesktop.UPower.PowerProfiles"),
                        QStringLiteral("/org/freedesktop/UPower/PowerProfiles"),
                        QStringLiteral("org.freedesktop.UPower.PowerProfiles")},
            "org.freedesktop.UPower.PowerProfiles", "/org/freedesktop/UPower/PowerProfiles");
    }
    void lowPowerMode() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, service);
        QFETCH(QString, path);
        QVERIFY(m_bus.startService(service, arguments));
        // A mock without a template has no properties until given one.
        if (!arguments.contains(QStringLiteral("-t"))) {
            QVERIFY(call(service, path, mockInterface, QStringLiteral("AddProperty"),
                         {service, QStringLiteral("ActiveProfile"), QStringLiteral("balanced")}));
        }
        UPowerPowerSource source(QDBusConnection::sessionBus(), m_scheduler, m_sys.path());
        settle(source);
        QVERIFY(!source.lowPowerMode());
        QSignalSpy changes(&source, &PowerSource::changed);

        const QString profile = QStringLiteral("ActiveProfile");
        QVERIFY(setRemote(service, path, service, profile, QStringLiteral("power-saver")));
        QTRY_VERIFY(source.lowPowerMode());
        QVERIFY(setRemote(service, path, service, profile, QStringLiteral("performance")));
        QTRY_VERIFY(!source.lowPowerMode());
        QCOMPARE(changes.count(), 2);
        m_bus.stopServices();
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

private:
    SessionBusMock m_bus;
    test::ManualScheduler m_scheduler;
    QTemporaryDir m_sys;
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestUPowerPowerSource)
#include "tst_upowerpowersource.moc"
