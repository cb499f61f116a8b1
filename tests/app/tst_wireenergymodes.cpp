#include "ManualClock.h"
#include "ManualScheduler.h"
#include "PowerServicesMock.h"
#include "app/WireEnergyModes.h"
#include "platform/linux/UPowerPowerSource.h"
#include "platform/null/MemoryDefaults.h"
#include "readings/PowerWatcher.h"
#include "settings/AppSettings.h"
#include "tick/TickCoordinator.h"

#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using namespace tw::test;
using EnergyMode = AppSettings::EnergyMode;
using Battery = PowerServicesMock::Battery;

Q_DECLARE_METATYPE(Battery)

// As the program wires them, over the real UPower source with UPower served by python3-dbusmock
// on a private bus: the machine's power, the settings and the tick, from launch through the
// battery running low and the charger coming back.
class tst_WireEnergyModes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        if (!m_bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(m_bus.skipReason()));
        }
    }
    void cleanup() { m_bus.stopServices(); }

    void tickFollowsTheModeInForce_data() {
        QTest::addColumn<EnergyMode>("chosen");
        QTest::addColumn<bool>("autoSaver");
        QTest::addColumn<Battery>("low");
        QTest::addColumn<EnergyMode>("inForce");
        QTest::newRow("balanced on a battery at 15 %")
            << EnergyMode::balanced << true << Battery{15, true} << EnergyMode::saver;
        QTest::newRow("the switch off keeps the chosen mode")
            << EnergyMode::high << false << Battery{15, true} << EnergyMode::high;
        QTest::newRow("a desktop without a battery")
            << EnergyMode::balanced << true << Battery{15, true, false} << EnergyMode::balanced;
    }
    void tickFollowsTheModeInForce() {
        QFETCH(EnergyMode, chosen);
        QFETCH(bool, autoSaver);
        QFETCH(Battery, low);
        QFETCH(EnergyMode, inForce);
        PowerServicesMock services(m_bus);
        QVERIFY(services.start(Battery{80, false, low.present}));
        ManualClock clock;
        ManualScheduler scheduler(&clock);
        QTemporaryDir sys;
        UPowerPowerSource source(QDBusConnection::sessionBus(), scheduler, sys.path());
        QTRY_COMPARE(source.battery().percent, low.present ? 80 : -1);
        MemoryDefaults defaults;
        AppSettings settings(defaults);
        settings.setEnergyMode(chosen);
        settings.setAutoSaver(autoSaver);
        TickCoordinator ticker(scheduler, clock, clock);
        PowerWatcher watcher(source);
        wireEnergyModes(settings, ticker, &watcher);
        QCOMPARE(ticker.interval(), AppSettings::tickInterval(chosen));

        QVERIFY(services.setBattery(low));
        const bool constrained = low.present;
        QTRY_COMPARE(settings.powerConstrained(), constrained);
        QCOMPARE(settings.effectiveEnergyMode(), inForce);
        QCOMPARE(ticker.interval(), AppSettings::tickInterval(inForce));
        // A choice made meanwhile is the one in force once the charger is back.
        settings.setEnergyMode(EnergyMode::high);
        QCOMPARE(settings.effectiveEnergyMode(),
                 autoSaver && constrained ? EnergyMode::saver : EnergyMode::high);
        QVERIFY(services.setOnBattery(false));
        QTRY_VERIFY(!settings.powerConstrained());
        QCOMPARE(settings.effectiveEnergyMode(), EnergyMode::high);
        QCOMPARE(ticker.interval(), AppSettings::tickInterval(EnergyMode::high));
        settings.setEnergyMode(EnergyMode::saver);
        QCOMPARE(ticker.interval(), AppSettings::tickInterval(EnergyMode::saver));
    }

private:
    SessionBusMock m_bus;
};

QTEST_GUILESS_MAIN(tst_WireEnergyModes)
#include "tst_wireenergymodes.moc"
