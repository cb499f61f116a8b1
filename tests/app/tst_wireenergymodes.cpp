#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ScriptedMachine.h"
#include "app/WireEnergyModes.h"
#include "platform/null/MemoryDefaults.h"
#include "readings/PowerWatcher.h"
#include "settings/AppSettings.h"
#include "tick/TickCoordinator.h"

#include <QTest>

using namespace tw;
using namespace tw::test;
using EnergyMode = AppSettings::EnergyMode;

Q_DECLARE_METATYPE(BatterySnapshot)

class tst_WireEnergyModes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // As the program wires them: the machine's power, the settings and the tick, from launch
    // through the battery running low and the charger coming back.
    void tickFollowsTheModeInForce_data() {
        QTest::addColumn<EnergyMode>("chosen");
        QTest::addColumn<bool>("autoSaver");
        QTest::addColumn<BatterySnapshot>("low");
        QTest::addColumn<EnergyMode>("inForce");
        QTest::newRow("balanced on a battery at 15 %")
            << EnergyMode::balanced << true << ScriptedPower::onBattery(15) << EnergyMode::saver;
        QTest::newRow("the switch off keeps the chosen mode")
            << EnergyMode::high << false << ScriptedPower::onBattery(15) << EnergyMode::high;
        QTest::newRow("a desktop without a battery")
            << EnergyMode::balanced << true << BatterySnapshot{} << EnergyMode::balanced;
    }
    void tickFollowsTheModeInForce() {
        QFETCH(EnergyMode, chosen);
        QFETCH(bool, autoSaver);
        QFETCH(BatterySnapshot, low);
        QFETCH(EnergyMode, inForce);
        ManualClock clock;
        ManualScheduler scheduler(&clock);
        MemoryDefaults defaults;
        AppSettings settings(defaults);
        settings.setEnergyMode(chosen);
        settings.setAutoSaver(autoSaver);
        TickCoordinator ticker(scheduler, clock, clock);
        ScriptedPower power;
        power.state = BatterySnapshot{.percent = 80, .hasBattery = true};
        PowerWatcher watcher(power);
        wireEnergyModes(settings, ticker, &watcher);
        QCOMPARE(ticker.interval(), AppSettings::tickInterval(chosen));

        power.announce(low);
        QCOMPARE(settings.powerConstrained(), low.hasBattery);
        QCOMPARE(settings.effectiveEnergyMode(), inForce);
        QCOMPARE(ticker.interval(), AppSettings::tickInterval(inForce));
        // A choice made meanwhile is the one in force once the charger is back.
        settings.setEnergyMode(EnergyMode::high);
        QCOMPARE(settings.effectiveEnergyMode(),
                 autoSaver && low.hasBattery ? EnergyMode::saver : EnergyMode::high);
        power.announce(BatterySnapshot{.percent = 16, .hasBattery = true});
        QCOMPARE(settings.effectiveEnergyMode(), EnergyMode::high);
        QCOMPARE(ticker.interval(), AppSettings::tickInterval(EnergyMode::high));
        settings.setEnergyMode(EnergyMode::saver);
        QCOMPARE(ticker.interval(), AppSettings::tickInterval(EnergyMode::saver));
    }
};

QTEST_GUILESS_MAIN(tst_WireEnergyModes)
#include "tst_wireenergymodes.moc"
