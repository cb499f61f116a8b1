#include "ScriptedMachine.h"
#include "readings/PowerWatcher.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;

namespace {

using test::ScriptedPower;

BatterySnapshot onBattery(int percent) {
    return ScriptedPower::onBattery(percent);
}

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

Q_DECLARE_METATYPE(BatterySnapshot)

class tst_PowerWatcher : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // From one state of the machine to the next: the reason always follows, the callback only
    // a change of whether power is short.
    void refresh_data() {
        QTest::addColumn<BatterySnapshot>("from");
        QTest::addColumn<BatterySnapshot>("to");
        QTest::addColumn<bool>("lowPower");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<int>("calls");
        const BatterySnapshot full = onBattery(90);
        QTest::newRow("20 % is short") << full << onBattery(20) << false << "battery 20" << 1;
        QTest::newRow("21 % is not") << full << onBattery(21) << false << "none" << 0;
        BatterySnapshot plugged = onBattery(5);
        plugged.isPluggedIn = true;
        QTest::newRow("plugged in at 5 %") << full << plugged << false << "none" << 0;
        QTest::newRow("plugging in at 10 % ends it")
            << onBattery(10) << BatterySnapshot{.percent = 10, .hasBattery = true} << false
            << "none" << 1;
        QTest::newRow("no battery") << full << BatterySnapshot{} << false << "none" << 0;
        QTest::newRow("unknown percent") << full << onBattery(-1) << false << "none" << 0;
        QTest::newRow("power saver on a desktop")
            << BatterySnapshot{} << BatterySnapshot{} << true << "low power" << 1;
        QTest::newRow("a percent that keeps the state")
            << onBattery(15) << onBattery(12) << false << "battery 12" << 0;
    }
    void refresh() {
        QFETCH(BatterySnapshot, from);
        QFETCH(BatterySnapshot, to);
        QFETCH(bool, lowPower);
        QFETCH(QString, reason);
        ScriptedPower power;
        power.state = from;
        PowerWatcher watcher(power);
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

        power.announce(to, lowPower);
        QCOMPARE(describe(watcher.reason()), reason);
        QTEST(int(calls.size()), "calls");
        QCOMPARE(watcher.isConstrained(), watcher.reason().has_value());
        if (!calls.isEmpty()) {
            QCOMPARE(calls.last(), !before);
        }
        QCOMPARE(reasons.size(), first == reason ? 0 : 1);
    }
};

QTEST_GUILESS_MAIN(tst_PowerWatcher)
#include "tst_powerwatcher.moc"
