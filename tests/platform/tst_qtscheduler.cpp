#include "platform/QtScheduler.h"

#include <QElapsedTimer>
#include <QTest>

using namespace std::chrono_literals;

// The production scheduler on a real event loop: short real waits, bounded by QTRY timeouts.
class TestQtScheduler : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void singleShotFiresOnceAndReportsDone() {
        tw::QtScheduler scheduler;
        int count = 0;
        auto task = scheduler.singleShot(5ms, 0ms, this, [&] { ++count; });
        QVERIFY(task.isActive());
        QTRY_COMPARE(count, 1);
        QVERIFY(!task.isActive());
        QTest::qWait(30);
        QCOMPARE(count, 1);
    }

    void cancelledOrContextlessTimersStop() {
        tw::QtScheduler scheduler;
        int count = 0;
        auto repeating = scheduler.repeating(5ms, 1ms, this, [&] { ++count; });
        QTRY_VERIFY(count >= 2);
        repeating.cancel();
        const int seen = count;
        QTest::qWait(30);
        QCOMPARE(count, seen);

        auto context = std::make_unique<QObject>();
        int other = 0;
        auto task = scheduler.repeating(5ms, 1ms, context.get(), [&] { ++other; });
        context.reset();
        QTest::qWait(30);
        QCOMPARE(other, 0);
        QVERIFY(!task.isActive());
    }
};

QTEST_GUILESS_MAIN(TestQtScheduler)
#include "tst_qtscheduler.moc"
