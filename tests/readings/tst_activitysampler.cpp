#include "ScriptedReadings.h"
#include "TestRows.h"
#include "readings/ActivitySampler.h"

#include <QTest>

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

} // namespace

class TestActivitySampler : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
};

QTEST_GUILESS_MAIN(TestActivitySampler)
#include "tst_activitysampler.moc"
