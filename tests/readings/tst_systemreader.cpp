#include "ScriptedReadings.h"
#include "TestRows.h"
#include "readings/CounterDelta.h"
#include "readings/SystemReader.h"

#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

class TestSystemReader : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void counterDeltas_data() {
        QTest::addColumn<quint64>("before");
        QTest::addColumn<quint64>("after");
        QTest::addColumn<qint64>("delta"); // -1: none
        row("grows", quint64(100), quint64(250), qint64(150));
        row("still", quint64(7), quint64(7), qint64(0));
        row("32-bit wrap", quint64(0xFFFFFF00u), quint64(0x100), qint64(0x200));
        row("went back a little", quint64(1000), quint64(900), qint64(-1));
        row("64-bit went back", quint64(1) << 40, quint64(5), qint64(-1));
        row("reset to zero from mid-range", quint64(0x70000000u), quint64(0), qint64(-1));
    }
    void counterDeltas() {
        QFETCH(quint64, before);
        QFETCH(quint64, after);
        QFETCH(qint64, delta);
        const std::optional<quint64> got = counterDelta(before, after);
        QCOMPARE(got ? qint64(*got) : -1, delta);
    }

    // Busy is user + nice + system; the first read has nothing to compare with.
    void cpuBetweenReads_data() {
        QTest::addColumn<CpuTicks>("first");
        QTest::addColumn<CpuTicks>("second");
        QTest::addColumn<double>("cpu");
        row("quarter busy", CpuTicks{100, 0, 0, 100}, CpuTicks{120, 10, 20, 250}, 0.25);
        row("nice counts busy", CpuTicks{0, 0, 0, 0}, CpuTicks{0, 50, 0, 50}, 0.5);
        row("no time passed", CpuTicks{5, 5, 5, 5}, CpuTicks{5, 5, 5, 5}, 0.0);
        row("wrapped idle", CpuTicks{0, 0, 0, 0xFFFFFFF0u}, CpuTicks{30, 0, 0, 0x0A}, 30.0 / 56.0);
        row("went back", CpuTicks{500, 0, 0, 500}, CpuTicks{400, 0, 0, 600}, 0.0);
    }
    void cpuBetweenReads() {
        QFETCH(CpuTicks, first);
        QFETCH(CpuTicks, second);
        QFETCH(double, cpu);
        ScriptedSystemSource source;
        source.ticks = {first, second};
        SystemReader reader(source);
        QCOMPARE(reader.readCPUUsage(), 0.0);
        QCOMPARE(reader.readCPUUsage(), cpu);
    }

    // A figure whose source failed keeps its last good value; graphics that are not reported
    // are none.
    void failedSourcesKeepTheLastGoodValue() {
        ScriptedSystemSource source;
        source.ticks = {CpuTicks{0, 0, 0, 0}, CpuTicks{50, 0, 0, 50}, std::nullopt};
        source.memoryCounters = MemoryCounters{};
        source.memoryCounters->total = 1000;
        source.memoryCounters->available = 400;
        source.volumeList = {Volume{u"/"_s, u"root"_s, 30, 100, false}};
        SystemReader reader(source);
        const QDateTime start(QDate(2026, 3, 14), QTime(9, 0));
        reader.read(start);
        const SystemSnapshot good = reader.read(start.addSecs(2));
        QCOMPARE(good.cpu, 0.5);
        QCOMPARE(good.ramUsed, 600.0);
        QCOMPARE(good.diskFree, 30.0);
        QCOMPARE(good.gpu, std::nullopt);

        source.memoryCounters.reset();
        source.volumeList.clear();
        const SystemSnapshot failed = reader.read(start.addSecs(70));
        QCOMPARE(failed.cpu, 0.5);
        QCOMPARE(failed.ramUsed, 600.0);
        QCOMPARE(failed.ramTotal, 1000.0);
        QCOMPARE(failed.diskTotal, 100.0);
        QCOMPARE(failed.sampledAt, start.addSecs(70));
    }

    void diskIsReadOnceAMinute_data() {
        QTest::addColumn<qint64>("laterMs");
        QTest::addColumn<int>("reads");
        row("59.9 s later", qint64(59900), 1);
        row("60 s later", qint64(60000), 2);
        row("a date before", qint64(-1000), 2);
    }
    void diskIsReadOnceAMinute() {
        QFETCH(qint64, laterMs);
        QFETCH(int, reads);
        ScriptedSystemSource source;
        source.volumeList = {Volume{u"/"_s, u"root"_s, 1, 2, false}};
        SystemReader reader(source);
        const QDateTime start(QDate(2026, 3, 14), QTime(9, 0));
        QVERIFY(reader.readCachedDiskUsage(start));
        source.volumeList.first().free = 2;
        const auto disk = reader.readCachedDiskUsage(start.addMSecs(laterMs));
        QCOMPARE(source.volumeCalls, reads);
        QCOMPARE(disk->free, reads == 1 ? 1.0 : 2.0);
    }
};

QTEST_GUILESS_MAIN(TestSystemReader)
#include "tst_systemreader.moc"
