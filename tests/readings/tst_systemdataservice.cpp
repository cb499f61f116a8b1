#include "ScriptedReadings.h"
#include "TestRows.h"
#include "readings/SystemDataService.h"

#include <QTest>

using namespace tw;
using namespace tw::test;

namespace {

const QDateTime start(QDate(2026, 3, 14), QTime(9, 0));

} // namespace

class TestSystemDataService : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cacheBoundaries_data() {
        QTest::addColumn<qint64>("laterMs");
        QTest::addColumn<int>("samples");
        row("same moment", qint64(0), 1);
        row("1.99 s later", qint64(1990), 1);
        row("2.0 s later", qint64(2000), 2);
        row("a date before", qint64(-10), 2);
    }
    void cacheBoundaries() {
        QFETCH(qint64, laterMs);
        QFETCH(int, samples);
        InlineRunner runner;
        int sampled = 0;
        SystemDataService service(
            [&sampled](const QDateTime& now) {
                SystemSnapshot snapshot;
                snapshot.sampledAt = now;
                snapshot.cpu = double(++sampled);
                return snapshot;
            },
            runner);
        QList<SystemSnapshot> got;
        const auto keep = [&got](const SystemSnapshot& snapshot) { got.append(snapshot); };
        service.snapshot(start, this, keep);
        service.snapshot(start.addMSecs(laterMs), this, keep);
        QCOMPARE(sampled, samples);
        QCOMPARE(got.size(), 2);
        QCOMPARE(got.last().cpu, double(samples));
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
};

QTEST_GUILESS_MAIN(TestSystemDataService)
#include "tst_systemdataservice.moc"
