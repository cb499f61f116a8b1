#include "ManualScheduler.h"
#include "PowerServicesMock.h"
#include "SysfsTree.h"
#include "TestRows.h"
#include "platform/linux/UPowerPowerSource.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(tw::BatterySnapshot)
Q_DECLARE_METATYPE(tw::test::PowerServicesMock::Battery)

namespace tw {

namespace {

using Battery = test::PowerServicesMock::Battery;

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

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_sys.isValid());
        if (!m_bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(m_bus.skipReason()));
        }
    }
    void cleanup() { m_bus.stopServices(); }

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

private:
    SessionBusMock m_bus;
    test::PowerServicesMock m_services{m_bus};
    test::ManualScheduler m_scheduler;
    QTemporaryDir m_sys;
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestUPowerPowerSource)
#include "tst_upowerpowersource.moc"
