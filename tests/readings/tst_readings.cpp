// The readings over scripted sources: the hub that samples what the tiles in view demand, the
// readers' counters between reads, the processor, cores, programs, network and sensors they make
// of them, how long a shared reading is kept, the runners that take reads off the caller's thread,
// and the program's own energy meter.
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ScriptedMachine.h"
#include "ScriptedMediaPlayers.h"
#include "ScriptedReadings.h"
#include "TestRows.h"
#include "net/HttpClient.h"
#include "readings/ActivitySampler.h"
#include "readings/AppEnergyMeter.h"
#include "readings/CounterDelta.h"
#include "readings/NetworkSampler.h"
#include "readings/PoolSampleRunner.h"
#include "readings/Readings.h"
#include "readings/SensorProbe.h"
#include "readings/SensorReader.h"
#include "readings/SystemDataService.h"
#include "readings/SystemReader.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <limits>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QDateTime start(QDate(2026, 3, 14), QTime(9, 0));

ProcessSample process(qint32 pid, const char* name, std::chrono::nanoseconds time,
                      quint64 resident = 0) {
    return {pid, QString::fromUtf8(name), time, resident};
}

SensorValue value(std::optional<SensorKind> kind, double celsius, const char* label = "t") {
    return {QString::fromUtf8(label), kind, celsius};
}

std::chrono::nanoseconds secondsOf(double value) {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
        std::chrono::duration<double>(value));
}

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

// Covers are not this test's business: no request is ever answered.
class SilentHttp final : public HttpClient {
public:
    void get(const HttpRequest&, const QObject*, Completion) override {}
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

    // The players are followed only while a tile shows them, and asked again once a minute.
    void nowPlayingFollowsThePlayersWhileDemanded() {
        ScriptedMediaPlayers players;
        SilentHttp http;
        ManualClock clock;
        InlineRunner runner;
        Readings readings({.media = &players, .http = &http}, clock, &runner);
        QSignalSpy changed(&readings, &Readings::boardChanged);
        readings.setDemand(ReadingFeed::nowPlaying);
        QVERIFY(players.watching);
        QVERIFY(readings.board().nowPlaying && !readings.board().nowPlaying->info.hasInfo());
        MediaPlayerState player;
        player.source.id = u"org.mpris.MediaPlayer2.a"_s;
        player.info.title = u"Song"_s;
        player.heardAt = player.changedAt = clock.now();
        players.set({player});
        QCOMPARE(readings.board().nowPlaying->info.title, u"Song"_s);
        QCOMPARE(changed.last().first().value<ReadingFeeds>(),
                 ReadingFeeds(ReadingFeed::nowPlaying));
        for (int second = 0; second < 61; ++second) {
            clock.advance(1s);
            readings.refresh(clock.now());
        }
        QCOMPARE(players.refreshes, 1);
        readings.setDemand({});
        QVERIFY(!players.watching);
        QVERIFY(!readings.board().nowPlaying.has_value());
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

    // A second read within its time costs nothing; one at or past it, or dated before the
    // first, reads again. Every caller has the newest read's answer.
    void keptFor_data() {
        QTest::addColumn<QString>("reading");
        QTest::addColumn<qint64>("laterMs");
        QTest::addColumn<int>("reads");
        row("system, same moment", "system", qint64(0), 1);
        row("system, 1.99 s later", "system", qint64(1990), 1);
        row("system, 2 s later", "system", qint64(2000), 2);
        row("system, a date before", "system", qint64(-10), 2);
        row("sensors, 2.999 s later", "sensors", qint64(2999), 1);
        row("sensors, 3 s later", "sensors", qint64(3000), 2);
        row("disk, 59.9 s later", "disk", qint64(59900), 1);
        row("disk, 60 s later", "disk", qint64(60000), 2);
        row("disk, a date before", "disk", qint64(-1000), 2);
    }
    void keptFor() {
        QFETCH(QString, reading);
        QFETCH(qint64, laterMs);
        QFETCH(int, reads);
        InlineRunner runner;
        int read = 0;
        QList<double> answers;
        const QList<QDateTime> moments{start, start.addMSecs(laterMs)};
        if (reading == QLatin1String("system")) {
            SystemDataService service(
                [&read](const QDateTime& now) {
                    SystemSnapshot snapshot;
                    snapshot.sampledAt = now;
                    snapshot.cpu = double(++read);
                    return snapshot;
                },
                runner);
            for (const QDateTime& at : moments) {
                service.snapshot(at, this, [&](const SystemSnapshot& s) { answers << s.cpu; });
            }
        } else if (reading == QLatin1String("sensors")) {
            ScriptedSensorSource source;
            SensorReader reader(source, runner);
            for (const QDateTime& at : moments) {
                source.sample.fans = {{u"fan1"_s, double(source.reads + 1)}};
                reader.snapshot(at, this,
                                [&](const SensorSnapshot& s) { answers << s.fans.at(0); });
            }
            read = source.reads;
        } else {
            ScriptedSystemSource source;
            source.volumeList = {Volume{u"/"_s, u"root"_s, 1, 2, false}};
            SystemReader reader(source);
            for (const QDateTime& at : moments) {
                answers << reader.readCachedDiskUsage(at)->free;
                source.volumeList.first().free = 2;
            }
            read = source.volumeCalls;
        }
        QCOMPARE(read, reads);
        QCOMPARE(answers, (QList<double>{1, double(reads)}));
    }

    // Callers while a read is in flight join it; a caller gone by then is not called.
    void callersAtOnceShareOneRead() {
        HeldRunner runner;
        int sampled = 0;
        SystemDataService service(
            [&sampled](const QDateTime& now) {
                ++sampled;
                SystemSnapshot snapshot;
                snapshot.sampledAt = now;
                return snapshot;
            },
            runner);
        int first = 0;
        int second = 0;
        int gone = 0;
        service.snapshot(start, this, [&first](const SystemSnapshot&) { ++first; });
        service.snapshot(start.addSecs(5), this, [&second](const SystemSnapshot&) { ++second; });
        {
            QObject leaving;
            service.snapshot(start, &leaving, [&gone](const SystemSnapshot&) { ++gone; });
        }
        QVERIFY(service.inFlight());
        QCOMPARE(runner.held(), 1);
        runner.releaseAll();
        QCOMPARE(sampled, 1);
        QCOMPARE(first, 1);
        QCOMPARE(second, 1);
        QCOMPARE(gone, 0);
        QVERIFY(!service.inFlight());
        QCOMPARE(service.cached()->sampledAt, start);
    }

    // The work runs off the caller's thread, the result comes back on it; a receiver gone by
    // then hears nothing, and a runner that goes waits for the work in progress.
    void poolRunsAwayAndAnswersAtHome() {
        QThread* worker = nullptr;
        QThread* answered = nullptr;
        int gone = 0;
        bool finished = false;
        {
            PoolSampleRunner runner;
            runSample(
                runner, this, [&worker] { return (worker = QThread::currentThread()) != nullptr; },
                [&answered](bool) { answered = QThread::currentThread(); });
            auto leaving = std::make_unique<QObject>();
            runner.run([] {}, leaving.get(), [&gone] { ++gone; });
            leaving.reset();
            QTRY_VERIFY(answered != nullptr);
            QVERIFY(worker != QThread::currentThread());
            QCOMPARE(answered, QThread::currentThread());

            QSemaphore started;
            QSemaphore release;
            runner.run(
                [&] {
                    started.release();
                    release.acquire();
                    finished = true;
                },
                this, [] {});
            started.acquire();
            release.release();
            // Leaving the scope destroys the runner while the work may still run.
        }
        QVERIFY(finished);
        QCoreApplication::processEvents();
        QCOMPARE(gone, 0);
    }

    // Keyed by core number: a core that goes or comes leaves the others' loads where they are.
    void coresFollowTheirNumbers() {
        ScriptedSystemSource source;
        source.cores = {
            {{0, {0, 0, 0, 0}}, {1, {0, 0, 0, 0}}, {2, {0, 0, 0, 0}}},
            {{0, {50, 0, 0, 50}}, {2, {0, 0, 100, 0}}, {3, {9, 9, 9, 9}}},
        };
        ActivitySampler sampler(source);
        QCOMPARE(sampler.readCores(), QList<double>({0, 0, 0}));
        QCOMPARE(sampler.readCores(), QList<double>({0.5, 1.0, 0}));
    }

    // A pid's share is its time since the last read over the time between the reads.
    void processShares_data() {
        QTest::addColumn<QList<ProcessSample>>("before");
        QTest::addColumn<QList<ProcessSample>>("after");
        QTest::addColumn<double>("cpu");
        row("half a core", QList{process(7, "a", 1s)}, QList{process(7, "a", 2s)}, 0.5);
        row("new pid", QList{process(7, "a", 1s)}, QList{process(8, "a", 2s)}, 0.0);
        row("reused pid, less time", QList{process(7, "a", 5s)}, QList{process(7, "a", 1s)}, 0.0);
        row("two processes of one program", QList{process(1, "a", 0s), process(2, "a", 0s)},
            QList{process(1, "a", 1s), process(2, "a", 2s)}, 1.5);
    }
    void processShares() {
        QFETCH(QList<ProcessSample>, before);
        QFETCH(QList<ProcessSample>, after);
        QFETCH(double, cpu);
        ScriptedSystemSource source;
        source.processTable = {before, after};
        ActivitySampler sampler(source);
        const ActivitySnapshot first = sampler.sample(start);
        QVERIFY(std::all_of(first.byCPU.begin(), first.byCPU.end(),
                            [](const ActivityProcess& p) { return p.cpu == 0; }));
        const ActivitySnapshot second = sampler.sample(start.addSecs(2));
        QCOMPARE(second.byCPU.size(), 1);
        QCOMPARE(second.byCPU.first().cpu, cpu);
    }

    // Programs are added up by name and the first six kept by processor and by memory.
    void topSixByProcessorAndMemory() {
        QList<ProcessSample> before;
        QList<ProcessSample> after;
        for (int i = 0; i < 8; ++i) {
            const QByteArray name = "p" + QByteArray::number(i);
            before << process(i, name.constData(), 0s);
            after << process(i, name.constData(), std::chrono::seconds(i), quint64(100 - i));
        }
        after << process(20, "p7", 0s, 1000);
        ScriptedSystemSource source;
        source.processTable = {before, after};
        ActivitySampler sampler(source);
        sampler.sample(start);
        const ActivitySnapshot snapshot = sampler.sample(start.addSecs(10));
        QStringList byCPU;
        for (const ActivityProcess& p : snapshot.byCPU) {
            byCPU << p.name;
        }
        QCOMPARE(byCPU, QStringList({u"p7"_s, u"p6"_s, u"p5"_s, u"p4"_s, u"p3"_s, u"p2"_s}));
        QCOMPARE(snapshot.byMemory.first().name, QStringLiteral("p7"));
        QCOMPARE(snapshot.byMemory.first().memory, quint64(1093));
        QCOMPARE(snapshot.byMemory.size(), 6);
    }

    void pressure_data() {
        QTest::addColumn<double>("stall"); // negative: not reported
        QTest::addColumn<int>("pressure");
        using P = ActivitySnapshot::Pressure;
        row("not reported", -1.0, int(P::normal));
        row("9.9 %", 9.9, int(P::normal));
        row("10 %", 10.0, int(P::warning));
        row("39.9 %", 39.9, int(P::warning));
        row("40 %", 40.0, int(P::critical));
    }
    void pressure() {
        QFETCH(double, stall);
        QFETCH(int, pressure);
        const auto reported = stall < 0 ? std::nullopt : std::optional(stall);
        QCOMPARE(int(ActivitySampler::pressureOf(reported)), pressure);
    }

    // Rates over the time between reads; 0 on the first read, for a new interface and for a
    // counter that went back. Interfaces that are up come first, the busiest first.
    void networkRatesBetweenReads() {
        ScriptedSystemSource source;
        source.network = {
            {{u"eth0"_s, 1000, 0, true, false},
             {u"wlan0"_s, 0, 0, true, true},
             {u"usb0"_s, 5000, 5000, false, false}},
            {{u"eth0"_s, 3000, 500, true, false},
             {u"wlan0"_s, 100000, 0, true, true},
             {u"usb0"_s, 10, 10, false, false},
             {u"tun0"_s, 9000, 9000, true, false}},
        };
        NetworkSampler sampler(source);
        const NetworkSnapshot first = sampler.sample(start);
        QVERIFY(std::all_of(first.interfaces.begin(), first.interfaces.end(),
                            [](const InterfaceRate& r) { return r.receivedPerSecond == 0; }));
        const NetworkSnapshot second = sampler.sample(start.addSecs(2));
        QStringList order;
        for (const InterfaceRate& rate : second.interfaces) {
            order << rate.interface;
        }
        QCOMPARE(order, QStringList({u"wlan0"_s, u"eth0"_s, u"tun0"_s, u"usb0"_s}));
        QCOMPARE(second.interfaces.at(1).receivedPerSecond, 1000.0);
        QCOMPARE(second.interfaces.at(1).sentPerSecond, 250.0);
        QCOMPARE(second.interfaces.at(1).received, quint64(3000));
        QCOMPARE(second.interfaces.at(2).receivedPerSecond, 0.0);
        QCOMPARE(second.interfaces.at(3).receivedPerSecond, 0.0);
        QCOMPARE(second.primary()->interface, u"wlan0"_s);
    }

    // Implausible values are left out and not counted; the chip shows its hottest die, the
    // battery and storage their mean.
    void sensorKindsFromAcceptedValues() {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        SensorSample sample;
        sample.temperatures = {value(SensorKind::soc, 50),       value(SensorKind::soc, 71.5),
                               value(SensorKind::soc, 0),        value(SensorKind::soc, 200),
                               value(SensorKind::storage, 30),   value(SensorKind::storage, 40),
                               value(SensorKind::storage, nan),  value(std::nullopt, 45, "acpitz"),
                               value(std::nullopt, 150, "bogus")};
        sample.fans = {{u"fan1"_s, 1200}};
        const SensorSnapshot snapshot = SensorReader::snapshotOf(sample, start);
        QCOMPARE(snapshot.temperatures,
                 QList<SensorReading>({{SensorKind::soc, 71.5, 2}, {SensorKind::storage, 35, 2}}));
        QCOMPARE(snapshot.others, QList<SensorValue>({value(std::nullopt, 45, "acpitz")}));
        QCOMPARE(snapshot.fans, QList<double>({1200}));
        QVERIFY(snapshot.hasFans);
    }

    void probeText_data() {
        QTest::addColumn<SensorSample>("sample");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("found");
        SensorSample full;
        full.temperatures = {value(SensorKind::storage, 38.126), value(SensorKind::soc, 61.0),
                             value(SensorKind::soc, 58.0), value(std::nullopt, 40, "iwlwifi")};
        full.fans = {{u"fan1"_s, 1834.6}, {u"fan2"_s, 900}};
        row("kinds, others and fans", full,
            "Chip 61.00 °C (2 sensors)\nStorage 38.13 °C (1 sensors)\niwlwifi 40.00 °C\n"
            "fans:     1835 rpm, 900 rpm\n",
            true);
        SensorSample none;
        none.missing = {u"No temperature sensors were found."_s};
        row("nothing", none,
            "fans:     none reported (fanless Mac, or no fan keys)\n"
            "No temperature sensors were found.\n",
            false);
        SensorSample fansOnly;
        fansOnly.fans = {{u"fan1"_s, 0}};
        row("a stopped fan is a fan", fansOnly, "fans:     0 rpm\n", true);
    }
    void probeText() {
        QFETCH(SensorSample, sample);
        QFETCH(QString, text);
        QFETCH(bool, found);
        ScriptedSensorSource source;
        source.sample = sample;
        const SensorProbe::Report report = SensorProbe::report(source, start);
        QCOMPARE(report.text, text);
        QCOMPARE(report.foundAnything, found);
    }

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
        scheduler.advance(
            std::chrono::duration_cast<std::chrono::milliseconds>(secondsOf(stretch)));
        usage.processor += secondsOf(used);
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

QTEST_GUILESS_MAIN(TestReadings)
#include "tst_readings.moc"
