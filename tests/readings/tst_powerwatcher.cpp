#include "ManualScheduler.h"
#include "PowerServicesMock.h"
#include "TestRows.h"
#include "platform/linux/UPowerPowerSource.h"
#include "readings/PowerWatcher.h"

#include <QDBusPendingCallWatcher>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using Battery = test::PowerServicesMock::Battery;

Q_DECLARE_METATYPE(Battery)

namespace {

// "battery 20", "low power" or "none".
QString describe(const std::optional<PowerWatcher::Reason>& reason) {
    if (!reason) {
        return QStringLiteral("none");
    }
    return reason->kind == PowerWatcher::Reason::Kind::lowPowerMode
               ? QStringLiteral("low power")
               : QStringLiteral("battery %1").arg(reason->percent);
}

} // namespace

// The watcher over the real UPower source, with UPower and the power profiles daemon served by
// python3-dbusmock on a private bus.
class tst_PowerWatcher : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        if (!m_bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(m_bus.skipReason()));
        }
    }
    void cleanup() { m_bus.stopServices(); }

    // From one state of the machine to the next: the reason always follows, the callback only a
    // change of whether power is short.
    void refresh_data() {
        QTest::addColumn<Battery>("from");
        QTest::addColumn<Battery>("to");
        QTest::addColumn<QString>("profile");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<int>("calls");
        const Battery full{90, true};
        const Battery desktop{0, false, false};
        using test::row;
        row("20 % is short", full, Battery{20, true}, "", "battery 20", 1);
        row("21 % is not", full, Battery{21, true}, "", "none", 0);
        row("plugging in at 5 % ends it", Battery{5, true}, Battery{5, false}, "", "none", 1);
        row("no battery, whatever UPower says of it", desktop, Battery{3, true, false}, "", "none",
            0);
        row("the power-saver profile on a desktop", desktop, desktop, "power-saver", "low power",
            1);
        row("a percent that keeps the state", Battery{15, true}, Battery{12, true}, "",
            "battery 12", 0);
    }
    void refresh() {
        QFETCH(Battery, from);
        QFETCH(Battery, to);
        QFETCH(QString, profile);
        QFETCH(QString, reason);
        test::PowerServicesMock services(m_bus);
        QVERIFY(services.start(from));
        UPowerPowerSource source(QDBusConnection::sessionBus(), m_scheduler, m_sys.path());
        QTRY_VERIFY(source.findChildren<QDBusPendingCallWatcher*>().isEmpty());

        PowerWatcher watcher(source);
        QList<bool> calls;
        watcher.onChange = [&calls](bool constrained) { calls.append(constrained); };
        watcher.start();
        // A second start neither reads nor follows twice.
        watcher.start();
        const bool before = watcher.isConstrained();
        const QString first = describe(watcher.reason());
        QCOMPARE(calls.size(), before ? 1 : 0);
        calls.clear();
        QSignalSpy reasons(&watcher, &PowerWatcher::reasonChanged);

        QVERIFY(services.setBattery(to));
        if (!profile.isEmpty()) {
            QVERIFY(services.setProfile(profile));
        }
        QTRY_VERIFY(source.battery().hasBattery == to.present &&
                    (!to.present || (source.battery().percent == qRound(to.percent) &&
                                     source.battery().isPluggedIn == !to.onBattery)) &&
                    source.lowPowerMode() == (profile == QLatin1String("power-saver")));
        QCOMPARE(describe(watcher.reason()), reason);
        QTEST(int(calls.size()), "calls");
        QCOMPARE(watcher.isConstrained(), watcher.reason().has_value());
        if (!calls.isEmpty()) {
            QCOMPARE(calls.last(), !before);
        }
        QCOMPARE(reasons.size(), first == reason ? 0 : 1);
    }

private:
    SessionBusMock m_bus;
    test::ManualScheduler m_scheduler;
    // No power_supply tree: the battery is UPower's alone.
    QTemporaryDir m_sys;
};

QTEST_GUILESS_MAIN(tst_PowerWatcher)
#include "tst_powerwatcher.moc"
