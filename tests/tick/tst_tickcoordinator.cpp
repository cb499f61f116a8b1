#include "ManualClock.h"
#include "ManualScheduler.h"
#include "tick/SnapshotClock.h"
#include "tick/TickCoordinator.h"

#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;
using namespace tw;
using tw::test::ManualClock;
using tw::test::ManualScheduler;

namespace {

// A ticker on virtual time, with the application's pinnable clock for starts.
struct Rig {
    explicit Rig(QDateTime start = QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53, 250)))
        : clock(start)
        , scheduler(&clock) {}
    ManualClock clock;
    SnapshotClock snapshot{clock};
    ManualScheduler scheduler;
    TickCoordinator ticker{scheduler, clock, snapshot};
};

struct BeatLog {
    explicit BeatLog(Cadence& cadence) {
        QObject::connect(&cadence, &Cadence::minutes, &context, [this](const QDateTime& d) {
            log.append({QStringLiteral("min"), d});
        });
        QObject::connect(&cadence, &Cadence::days, &context, [this](const QDateTime& d) {
            log.append({QStringLiteral("day"), d});
        });
    }
    QObject context;
    QList<std::pair<QString, QDateTime>> log;
};

} // namespace

class TestTickCoordinator : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void noTimerUntilSomethingShows() {
        Rig rig;
        QCOMPARE(rig.scheduler.pendingCount(), 0);
        QVERIFY(!rig.ticker.isActive());
        rig.scheduler.advance(1h);
        QCOMPARE(rig.scheduler.pendingCount(), 0);
    }

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
        Rig rig;
        QSignalSpy activeChanged(&rig.ticker, &TickCoordinator::activeChanged);
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

    void toleranceIsAFifthOfTheInterval_data() {
        QTest::addColumn<int>("intervalMs");
        QTest::addColumn<int>("toleranceMs");
        QTest::newRow("one second") << 1000 << 200;
        QTest::newRow("two seconds") << 2000 << 400;
    }
    void toleranceIsAFifthOfTheInterval() {
        QFETCH(int, intervalMs);
        QFETCH(int, toleranceMs);
        Rig rig;
        rig.ticker.setInterval(std::chrono::milliseconds(intervalMs));
        rig.ticker.setActive(true);
        const auto pending = rig.scheduler.pending();
        QCOMPARE(pending.size(), size_t(1));
        QVERIFY(pending.front().repeating);
        QCOMPARE(pending.front().interval.count(), intervalMs);
        QCOMPARE(pending.front().tolerance.count(), toleranceMs);
    }

    void setIntervalWhileStoppedOnlyStores() {
        Rig rig;
        BeatLog beats(rig.ticker.cadence());
        QSignalSpy now(&rig.ticker, &TickCoordinator::nowChanged);
        rig.ticker.setInterval(2s);
        QCOMPARE(rig.ticker.interval(), 2000ms);
        QCOMPARE(rig.scheduler.pendingCount(), 0);
        QVERIFY(!rig.ticker.isActive());
        QCOMPARE(now.size(), 0);
        rig.ticker.setActive(true);
        QCOMPARE(rig.scheduler.pending().front().interval, 2000ms);
    }

    void setIntervalWithTheSameValueKeepsThePhase() {
        Rig rig;
        rig.ticker.setActive(true);
        rig.scheduler.advance(400ms);
        const auto due = rig.scheduler.pending().front().due;
        rig.ticker.setInterval(1s);
        QCOMPARE(rig.scheduler.pending().front().due, due);
    }

    void setIntervalWhileRunningRestartsAndReseeds() {
        Rig rig;
        rig.ticker.setActive(true);
        rig.scheduler.advance(400ms);
        rig.ticker.setInterval(2s);
        const auto pending = rig.scheduler.pending();
        QCOMPARE(pending.size(), size_t(1));
        QCOMPARE(pending.front().interval, 2000ms);
        QCOMPARE(pending.front().due, rig.scheduler.elapsed() + 2000ms);
        QCOMPARE(rig.ticker.now(), rig.clock.now());
    }

    void setIntervalRefusesNonPositive() {
        Rig rig;
        rig.ticker.setActive(true);
        rig.ticker.setInterval(0ms);
        rig.ticker.setInterval(-5ms);
        QCOMPARE(rig.ticker.interval(), 1000ms);
        QCOMPARE(rig.scheduler.pending().front().interval, 1000ms);
    }

    void startTakesTheCurrentTimeAndTicksTakeTheSystemClock() {
        Rig rig;
        const QDateTime pin(QDate(2026, 3, 15), QTime(7, 30));
        rig.snapshot.setPinned(pin);
        rig.ticker.setActive(true);
        QCOMPARE(rig.ticker.now(), pin);
        QCOMPARE(rig.ticker.currentTime(), pin);
        QSignalSpy now(&rig.ticker, &TickCoordinator::nowChanged);
        rig.scheduler.advance(3s);
        QCOMPARE(now.size(), 3);
        QCOMPARE(rig.ticker.now(), rig.clock.now());
        QCOMPARE(now.last().first().toDateTime(), rig.clock.now());
    }

    void tickAcrossMidnightSendsMinutesThenDays() {
        Rig rig(QDateTime(QDate(2026, 3, 14), QTime(23, 59, 59, 500)));
        BeatLog beats(rig.ticker.cadence());
        rig.ticker.setActive(true);
        rig.scheduler.advance(1s);
        const QDateTime tick(QDate(2026, 3, 15), QTime(0, 0, 0, 500));
        QCOMPARE(rig.ticker.now(), tick);
        QCOMPARE(beats.log.size(), 2);
        QCOMPARE(beats.log[0], std::pair(QStringLiteral("min"), tick));
        QCOMPARE(beats.log[1], std::pair(QStringLiteral("day"), tick));
    }

    void anHourAsleepGivesOneMinutes() {
        Rig rig;
        BeatLog beats(rig.ticker.cadence());
        rig.ticker.setActive(true);
        // Asleep: the wall clock moves, the timer does not.
        rig.clock.setNow(rig.clock.now().addSecs(3600));
        rig.scheduler.advance(1s);
        QCOMPARE(beats.log.size(), 1);
        QCOMPARE(beats.log[0].first, QStringLiteral("min"));
        QCOMPARE(beats.log[0].second, rig.ticker.now());
    }

    void restartWithinTheMinuteSendsNothing() {
        Rig rig(QDateTime(QDate(2026, 3, 14), QTime(9, 26, 10)));
        BeatLog beats(rig.ticker.cadence());
        rig.ticker.setActive(true);
        rig.scheduler.advance(5s);
        rig.ticker.setActive(false);
        // While stopped the minute turns over; the restart seeds the new one.
        rig.scheduler.advance(50s);
        QCOMPARE(rig.scheduler.pendingCount(), 0);
        rig.ticker.setActive(true);
        rig.scheduler.advance(10s);
        QVERIFY(beats.log.isEmpty());
        rig.scheduler.advance(50s);
        QCOMPARE(beats.log.size(), 1);
    }

    void aGoneCoordinatorLeavesNoTimer() {
        ManualClock clock;
        ManualScheduler scheduler(&clock);
        {
            TickCoordinator ticker(scheduler, clock);
            ticker.setActive(true);
            QCOMPARE(scheduler.pendingCount(), 1);
        }
        QCOMPARE(scheduler.pendingCount(), 0);
        scheduler.advance(5s);
    }
};

QTEST_GUILESS_MAIN(TestTickCoordinator)
#include "tst_tickcoordinator.moc"
