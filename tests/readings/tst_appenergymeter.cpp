#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ScriptedMachine.h"
#include "readings/AppEnergyMeter.h"

#include <QTest>

using namespace tw;
using namespace std::chrono_literals;

namespace {

std::chrono::nanoseconds seconds(double value) {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
        std::chrono::duration<double>(value));
}

} // namespace

class tst_AppEnergyMeter : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // A first closed stretch of 40 s at 10 %, then the window closed again for `stretch`.
    void closedAverage_data() {
        QTest::addColumn<double>("stretch");
        QTest::addColumn<double>("used");
        QTest::addColumn<double>("percent");
        QTest::addColumn<double>("over");
        QTest::newRow("19 s keeps the previous") << 19.0 << 1.9 << 10.0 << 40.0;
        QTest::newRow("exactly 20 s replaces it") << 20.0 << 1.0 << 5.0 << 20.0;
        QTest::newRow("a counter going back reads as idle") << 30.0 << -1.0 << 0.0 << 30.0;
    }
    void closedAverage() {
        QFETCH(double, stretch);
        QFETCH(double, used);
        test::ManualClock clock;
        test::ManualScheduler scheduler(&clock);
        test::ScriptedUsage usage;
        AppEnergyMeter meter(usage, clock, scheduler);
        QVERIFY(!meter.closedAverage());

        // The first stretch runs from the meter's creation.
        scheduler.advance(40s);
        usage.processor += 4s;
        meter.windowOpened(clock.uptime());
        QCOMPARE(meter.closedAverage(), (AppEnergyMeter::Reading{10.0, 40.0}));

        meter.windowClosed(clock.uptime());
        scheduler.advance(std::chrono::duration_cast<std::chrono::milliseconds>(seconds(stretch)));
        usage.processor += seconds(used);
        meter.windowOpened(clock.uptime());
        QFETCH(double, percent);
        QFETCH(double, over);
        const auto average = meter.closedAverage();
        QVERIFY(average);
        QVERIFY2(qAbs(average->cpuPercent - percent) < 1e-6,
                 qPrintable(QString::number(average->cpuPercent)));
        QCOMPARE(average->seconds, over);
    }

    // Live: a sample every two seconds while the window is open, none once it closes; samples
    // closer than half a second apart count nothing; the history keeps the last 45.
    void live() {
        test::ManualClock clock;
        test::ManualScheduler scheduler(&clock);
        test::ScriptedUsage usage;
        usage.resident = 48 * 1024 * 1024;
        AppEnergyMeter meter(usage, clock, scheduler);
        meter.windowOpened(clock.uptime());
        meter.startLive();
        meter.startLive();
        QCOMPARE(meter.memoryMB(), 48.0);
        for (int i = 1; i <= 50; ++i) {
            usage.processor += 10ms * i;
            scheduler.advance(AppEnergyMeter::sampleInterval);
        }
        QCOMPARE(meter.liveHistory().size(), AppEnergyMeter::historyLength);
        // 10 ms × i over 2 s is i / 2 % of one core: the oldest kept is the sixth.
        QCOMPARE(meter.liveHistory().first(), 3.0);
        QCOMPARE(meter.liveHistory().last(), 25.0);
        QCOMPARE(meter.live(), 25.0);

        clock.advance(400ms);
        usage.processor += 400ms;
        meter.sample();
        QCOMPARE(meter.live(), 25.0);
        QCOMPARE(meter.liveHistory().size(), AppEnergyMeter::historyLength);

        usage.resident = 0;
        meter.windowClosed(clock.uptime());
        scheduler.advance(10s);
        QCOMPARE(meter.memoryMB(), 48.0);
        meter.windowOpened(clock.uptime());
        QVERIFY(meter.liveHistory().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_AppEnergyMeter)
#include "tst_appenergymeter.moc"
