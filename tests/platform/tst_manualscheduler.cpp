#include "ManualScheduler.h"

#include <QTest>

using namespace std::chrono_literals;
using tw::test::ManualClock;
using tw::test::ManualScheduler;

class TestManualScheduler : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void firesInDueOrderAndMovesTheClock() {
        ManualClock clock;
        const QDateTime start = clock.now();
        ManualScheduler scheduler(&clock);
        QStringList fired;
        QList<qint64> at;
        auto late = scheduler.singleShot(300ms, 0ms, nullptr, [&] {
            fired << QStringLiteral("late");
            at << start.msecsTo(clock.now());
        });
        auto early = scheduler.singleShot(100ms, 0ms, nullptr, [&] {
            fired << QStringLiteral("early");
            at << start.msecsTo(clock.now());
        });
        scheduler.advance(250ms);
        QCOMPARE(fired, QStringList{QStringLiteral("early")});
        QVERIFY(!early.isActive());
        QVERIFY(late.isActive());
        scheduler.advance(50ms);
        QCOMPARE(fired, (QStringList{QStringLiteral("early"), QStringLiteral("late")}));
        QCOMPARE(at, (QList<qint64>{100, 300}));
        QCOMPARE(start.msecsTo(clock.now()), 300);
    }

    void repeatingFiresOncePerIntervalUntilCancelled() {
        ManualScheduler scheduler;
        int count = 0;
        auto task = scheduler.repeating(1000ms, 200ms, nullptr, [&] { ++count; });
        scheduler.advance(3500ms);
        QCOMPARE(count, 3);
        QCOMPARE(scheduler.pending().front().tolerance, 200ms);
        task.cancel();
        scheduler.advance(5000ms);
        QCOMPARE(count, 3);
        QCOMPARE(scheduler.pendingCount(), 0);
    }

    void destroyedHandleOrContextCancels() {
        ManualScheduler scheduler;
        int count = 0;
        {
            auto task = scheduler.singleShot(10ms, 0ms, nullptr, [&] { ++count; });
        }
        auto context = std::make_unique<QObject>();
        auto task = scheduler.singleShot(10ms, 0ms, context.get(), [&] { ++count; });
        context.reset();
        scheduler.advance(100ms);
        QCOMPARE(count, 0);
    }

    void actionMayRescheduleItself() {
        ManualScheduler scheduler;
        tw::ScheduledTask task;
        int count = 0;
        std::function<void()> again = [&] {
            if (++count < 3) {
                task = scheduler.singleShot(10ms, 0ms, nullptr, again);
            }
        };
        task = scheduler.singleShot(10ms, 0ms, nullptr, again);
        scheduler.advance(100ms);
        QCOMPARE(count, 3);
    }

    void handleOutlivingSchedulerIsHarmless() {
        tw::ScheduledTask task;
        {
            ManualScheduler scheduler;
            task = scheduler.singleShot(10ms, 0ms, nullptr, [] {});
        }
        task.cancel();
        QVERIFY(!task.isActive());
    }
};

QTEST_GUILESS_MAIN(TestManualScheduler)
#include "tst_manualscheduler.moc"
