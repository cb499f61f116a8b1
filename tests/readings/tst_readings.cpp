#include "ManualClock.h"
#include "ScriptedMachine.h"
#include "ScriptedReadings.h"
#include "TestRows.h"
#include "readings/Readings.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct Rig {
    ScriptedSystemSource system;
    ScriptedSensorSource sensors;
    ScriptedPower power;
    ManualClock clock;
    InlineRunner runner;
    Readings readings{{&system, &power, &sensors, nullptr}, clock, &runner};

    Rig() {
        system.ticks = {CpuTicks{0, 0, 0, 0}, CpuTicks{10, 0, 0, 10}};
        system.volumeList = {Volume{u"/"_s, u"root"_s, 1, 2, false}};
    }
    void tick(std::chrono::milliseconds by = 1000ms) {
        clock.advance(by);
        readings.refresh(clock.now());
    }
};

} // namespace

class TestReadings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Only what is demanded is read: system alone never reads sensors, nothing reads nothing.
    void samplesOnlyTheDemandedFeeds_data() {
        QTest::addColumn<ReadingFeeds>("demand");
        QTest::addColumn<bool>("readsSystem");
        QTest::addColumn<bool>("readsProcesses");
        QTest::addColumn<int>("sensorReads");
        QTest::addColumn<int>("batteryReads");
        row("nothing", ReadingFeeds(), false, false, 0, 0);
        row("system", ReadingFeeds(ReadingFeed::system), true, false, 0, 0);
        row("activity", ReadingFeeds(ReadingFeed::activity), true, true, 0, 0);
        row("sensors", ReadingFeeds(ReadingFeed::sensors), false, false, 1, 0);
        row("battery", ReadingFeeds(ReadingFeed::battery), false, false, 0, 1);
    }
    void samplesOnlyTheDemandedFeeds() {
        QFETCH(ReadingFeeds, demand);
        QFETCH(bool, readsSystem);
        QFETCH(bool, readsProcesses);
        QFETCH(int, sensorReads);
        QFETCH(int, batteryReads);
        Rig rig;
        rig.readings.setDemand(demand);
        rig.tick();
        QCOMPARE(rig.system.calls > 0, readsSystem);
        QCOMPARE(rig.system.processCalls > 0, readsProcesses);
        QCOMPARE(rig.sensors.reads, sensorReads);
        QCOMPARE(rig.power.reads, batteryReads);
        QCOMPARE(rig.readings.board().system.has_value(), demand.testFlag(ReadingFeed::system));
    }

    // Each feed at its own pace; the board says which feeds changed and keeps the history.
    void feedsArriveAtTheirPace() {
        Rig rig;
        rig.readings.setDemand(ReadingFeed::system | ReadingFeed::network | ReadingFeed::disks);
        QSignalSpy changed(&rig.readings, &Readings::boardChanged);
        QHash<int, int> counts;
        // Ticks wander by some milliseconds; a feed still comes every interval, not every other.
        for (int second = 0; second < 20; ++second) {
            rig.tick(second % 2 == 0 ? 1010ms : 985ms);
        }
        for (const QList<QVariant>& signal : changed) {
            const auto feeds = signal.first().value<ReadingFeeds>();
            for (const ReadingFeed feed :
                 {ReadingFeed::system, ReadingFeed::network, ReadingFeed::disks}) {
                counts[int(feed)] += feeds.testFlag(feed) ? 1 : 0;
            }
        }
        QCOMPARE(counts.value(int(ReadingFeed::network)), 20);
        QCOMPARE(counts.value(int(ReadingFeed::system)), 10);
        // The volume list does not change, so it is announced once.
        QCOMPARE(counts.value(int(ReadingFeed::disks)), 1);
        QCOMPARE(rig.readings.board().systemHistory.size(), 10);
        QCOMPARE(rig.readings.board().systemHistory.at(1).cpu, 0.5);
    }

    // The battery comes from the source's announcements, and only while demanded.
    void batteryFollowsAnnouncementsWhileDemanded() {
        Rig rig;
        QSignalSpy changed(&rig.readings, &Readings::boardChanged);
        rig.readings.setDemand(ReadingFeed::battery);
        rig.power.announce(ScriptedPower::onBattery(40));
        QCOMPARE(rig.readings.board().battery->percent, 40);
        rig.readings.setDemand({});
        rig.power.announce(ScriptedPower::onBattery(39));
        QCOMPARE(rig.readings.board().battery->percent, 40);
        QCOMPARE(changed.size(), 2);
    }

    // A picture reads the counters twice, so that the load is a real figure.
    void sampleNowReadsTwice() {
        Rig rig;
        const ReadingsBoard board = rig.readings.sampleNow(Readings::allFeeds, 0ms);
        QCOMPARE(board.system->cpu, 0.5);
        QVERIFY(board.volumes.has_value());
        QVERIFY(board.sensors.has_value());
        QVERIFY(board.battery.has_value());
        QVERIFY(!board.bluetoothAvailable.has_value());
        QVERIFY(!rig.readings.board().system.has_value());
    }
};

QTEST_GUILESS_MAIN(TestReadings)
#include "tst_readings.moc"
