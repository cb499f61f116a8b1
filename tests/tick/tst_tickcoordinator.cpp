#include "TickRig.h"

#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;
using namespace tw;
using tw::test::TickRig;

class TestTickCoordinator : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void runsWhileDesktopOrPreviewShows_data() {
        QTest::addColumn<QList<int>>("steps"); // 1/-1: desktop on/off, 2/-2: preview on/off
        QTest::addColumn<QList<bool>>("running");
        QTest::newRow("desktop") << QList<int>{1, -1} << QList<bool>{true, false};
        QTest::newRow("preview") << QList<int>{2, -2} << QList<bool>{true, false};
        QTest::newRow("desktop joins preview")
            << QList<int>{2, 1, -2, -1} << QList<bool>{true, true, true, false};
        QTest::newRow("preview joins desktop")
            << QList<int>{1, 2, -1, -2} << QList<bool>{true, true, true, false};
        QTest::newRow("repeated true") << QList<int>{1, 1, -1} << QList<bool>{true, true, false};
    }
    void runsWhileDesktopOrPreviewShows() {
        QFETCH(QList<int>, steps);
        QFETCH(QList<bool>, running);
        TickRig rig;
        QSignalSpy activeChanged(&rig.ticker, &TickCoordinator::activeChanged);
        // No timer until something shows.
        rig.scheduler.advance(1h);
        QCOMPARE(rig.scheduler.pendingCount(), 0);
        QVERIFY(!rig.ticker.isActive());
        int starts = 0;
        bool wasRunning = false;
        for (qsizetype i = 0; i < steps.size(); ++i) {
            const int step = steps[i];
            const auto due = rig.scheduler.pending();
            if (std::abs(step) == 1) {
                rig.ticker.setActive(step > 0);
            } else {
                rig.ticker.setPreviewActive(step > 0);
            }
            QCOMPARE(rig.ticker.isActive(), running[i]);
            QCOMPARE(rig.scheduler.pendingCount(), running[i] ? 1 : 0);
            if (running[i] && wasRunning) {
                // Still the same timer, at the same phase.
                QCOMPARE(rig.scheduler.pending().front().due, due.front().due);
            }
            starts += running[i] && !wasRunning ? 1 : 0;
            wasRunning = running[i];
            rig.scheduler.advance(300ms);
        }
        QCOMPARE(activeChanged.size(), starts * 2);
    }

    // A new interval restarts a running timer at a new phase and takes the time anew; the same
    // interval, or one refused, changes nothing; while stopped it waits for the next start.
    void setInterval_data() {
        QTest::addColumn<bool>("running");
        QTest::addColumn<int>("requestedMs");
        QTest::addColumn<int>("intervalMs");
        QTest::addColumn<bool>("restarted");
        QTest::newRow("stopped: stored for the start") << false << 2000 << 2000 << false;
        QTest::newRow("running: restarts") << true << 2000 << 2000 << true;
        QTest::newRow("running, same value: keeps the phase") << true << 1000 << 1000 << false;
        QTest::newRow("zero refused") << true << 0 << 1000 << false;
        QTest::newRow("negative refused") << true << -5 << 1000 << false;
    }
    void setInterval() {
        QFETCH(bool, running);
        QFETCH(int, requestedMs);
        QFETCH(int, intervalMs);
        QFETCH(bool, restarted);
        TickRig rig;
        rig.ticker.setActive(running);
        rig.scheduler.advance(400ms);
        const auto before = rig.scheduler.pending();
        const QDateTime stamp = rig.ticker.now();
        rig.ticker.setInterval(std::chrono::milliseconds(requestedMs));
        QCOMPARE(rig.ticker.interval(), std::chrono::milliseconds(intervalMs));
        QCOMPARE(rig.scheduler.pendingCount(), running ? 1 : 0);
        rig.ticker.setActive(true);
        const auto pending = rig.scheduler.pending().front();
        QVERIFY(pending.repeating);
        QCOMPARE(pending.interval.count(), intervalMs);
        QCOMPARE(pending.tolerance.count(), intervalMs / 5);
        const bool freshStart = restarted || !running;
        QCOMPARE(pending.due,
                 freshStart ? rig.scheduler.elapsed() + pending.interval : before.front().due);
        QCOMPARE(rig.ticker.now(), freshStart ? rig.clock.now() : stamp);
    }

    // Ticks feed the cadence; a start seeds it, so a restart within the minute announces nothing.
    void ticksFeedTheCadenceAndStartsSeedIt() {
        TickRig rig(QDateTime(QDate(2026, 3, 14), QTime(23, 58, 10)));
        QSignalSpy minutes(&rig.ticker.cadence(), &Cadence::minutes);
        QSignalSpy days(&rig.ticker.cadence(), &Cadence::days);
        rig.ticker.setActive(true);
        rig.scheduler.advance(5s);
        rig.ticker.setActive(false);
        // While stopped the minute turns over; the restart seeds the new one.
        rig.scheduler.advance(50s);
        QCOMPARE(rig.scheduler.pendingCount(), 0);
        rig.ticker.setActive(true);
        rig.scheduler.advance(10s);
        QCOMPARE(minutes.size(), 0);
        rig.scheduler.advance(50s);
        const QDateTime midnight(QDate(2026, 3, 15), QTime(0, 0));
        QCOMPARE(minutes.size(), 1);
        QCOMPARE(minutes.first().first().toDateTime(), midnight);
        QCOMPARE(days.size(), 1);
        QCOMPARE(days.first().first().toDateTime(), midnight);
    }

    void aGoneCoordinatorLeavesNoTimer() {
        TickRig rig;
        {
            TickCoordinator ticker(rig.scheduler, rig.clock, rig.snapshot);
            ticker.setActive(true);
            QCOMPARE(rig.scheduler.pendingCount(), 1);
        }
        QCOMPARE(rig.scheduler.pendingCount(), 0);
        rig.scheduler.advance(5s);
    }
};

QTEST_GUILESS_MAIN(TestTickCoordinator)
#include "tst_tickcoordinator.moc"
