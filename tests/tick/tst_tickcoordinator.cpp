#include "ManualClock.h"
#include "ManualScheduler.h"
#include "tick/MinuteCoordinator.h"
#include "tick/SnapshotClock.h"
#include "tick/TickCoordinator.h"
#include "tick/TimeSource.h"

#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;
using namespace tw;

namespace {

// A ticker wired as the application wires it, on virtual time: ticks stamped by the system clock,
// starts and views seeded by the pinnable one.
struct TickRig {
    explicit TickRig(QDateTime start = QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53, 250)))
        : clock(start)
        , scheduler(&clock) {}
    test::ManualClock clock;
    SnapshotClock snapshot{clock};
    test::ManualScheduler scheduler;
    TickCoordinator ticker{scheduler, clock, snapshot};
    MinuteCoordinator minutes{ticker};
};

} // namespace

// The one tick timer and the views' time sources it wakes.
class TestTickCoordinator : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Steps 300 ms apart: D/d the desktop shows/goes, P/p the preview; whether the ticker runs
    // after each.
    void runsWhileDesktopOrPreviewShows_data() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("running");
        const auto row = [](const char* name, const char* steps, const char* running) {
            QTest::newRow(name) << QString::fromLatin1(steps) << QString::fromLatin1(running);
        };
        row("desktop", "Dd", "10");
        row("preview", "Pp", "10");
        row("desktop joins preview", "PDpd", "1110");
        row("preview joins desktop", "DPdp", "1110");
        row("repeated start", "DDd", "110");
    }
    void runsWhileDesktopOrPreviewShows() {
        QFETCH(QString, steps);
        QFETCH(QString, running);
        TickRig rig;
        QSignalSpy activeChanged(&rig.ticker, &TickCoordinator::activeChanged);
        // No timer until something shows.
        rig.scheduler.advance(1h);
        QCOMPARE(rig.scheduler.pendingCount(), 0);
        QVERIFY(!rig.ticker.isActive());
        int starts = 0;
        bool wasRunning = false;
        for (qsizetype i = 0; i < steps.size(); ++i) {
            const QChar step = steps.at(i);
            const bool on = running.at(i) == u'1';
            const auto due = rig.scheduler.pending();
            if (step.toLower() == u'd') {
                rig.ticker.setActive(step.isUpper());
            } else {
                rig.ticker.setPreviewActive(step.isUpper());
            }
            QCOMPARE(rig.ticker.isActive(), on);
            QCOMPARE(rig.scheduler.pendingCount(), on ? 1 : 0);
            if (on && wasRunning) {
                // Still the same timer, at the same phase.
                QCOMPARE(rig.scheduler.pending().front().due, due.front().due);
            }
            starts += on && !wasRunning ? 1 : 0;
            wasRunning = on;
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

    // 120 ticks from 09:26:53.25 to 09:28:53.25: two minutes turn over on the way, and a minutes
    // view shows the tick that turned the last one.
    void grainDecidesHowOftenAViewWakes() {
        TickRig rig;
        TimeSource seconds(TimeGrain::Seconds, rig.ticker, rig.minutes);
        TimeSource minutes(TimeGrain::Minutes, rig.ticker, rig.minutes);
        QSignalSpy secondsChanged(&seconds, &TimeSource::timeChanged);
        QSignalSpy minutesChanged(&minutes, &TimeSource::timeChanged);
        rig.ticker.setActive(true);
        rig.scheduler.advance(120s);
        QCOMPARE(secondsChanged.size(), 120);
        QCOMPARE(seconds.time().time(), QTime(9, 28, 53, 250));
        QCOMPARE(minutesChanged.size(), 2);
        QCOMPARE(minutes.time().time(), QTime(9, 28, 0, 250));
        QCOMPARE(minutesChanged.last().first().toDateTime(), minutes.time());
    }

    // The desktop's order: a tile made or shown again while the ticker is stopped, then the
    // ticker started. After a long stop the minute coordinator still holds the last tick's minute;
    // the view starts from the current time instead, and moves on with the next minute.
    void aViewAppearingAfterALongStopShowsTheCurrentTime() {
        TickRig rig;
        rig.ticker.setActive(true);
        rig.scheduler.advance(10s);
        rig.ticker.setActive(false);
        const QDateTime stale = rig.minutes.now();
        rig.scheduler.advance(3h);
        TimeSource made(TimeGrain::Minutes, rig.ticker, rig.minutes);
        QCOMPARE(rig.minutes.now(), stale);
        QCOMPARE(made.time(), rig.clock.now());

        rig.ticker.setActive(true);
        rig.scheduler.advance(10s);
        rig.ticker.setActive(false);
        rig.scheduler.advance(2h);
        QSignalSpy changed(&made, &TimeSource::timeChanged);
        made.reseed();
        rig.ticker.setActive(true);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(made.time(), rig.clock.now());
        rig.scheduler.advance(60s);
        QCOMPARE(changed.size(), 2);
        QCOMPARE(made.time(), rig.minutes.now());
    }

    // A launch pins the time before the ticker is made; views start with it, ticks run on. A
    // ticker that goes leaves no timer.
    void aPinnedTimeIsWhatViewsStartWith() {
        TickRig rig;
        const QDateTime pin(QDate(2026, 3, 15), QTime(7, 30));
        rig.snapshot.setPinned(pin);
        {
            TickCoordinator ticker(rig.scheduler, rig.clock, rig.snapshot);
            MinuteCoordinator minutes(ticker);
            TimeSource seconds(TimeGrain::Seconds, ticker, minutes);
            TimeSource minute(TimeGrain::Minutes, ticker, minutes);
            ticker.setActive(true);
            QCOMPARE(ticker.currentTime(), pin);
            QCOMPARE(seconds.time(), pin);
            QCOMPARE(minute.time(), pin);
            QSignalSpy now(&ticker, &TickCoordinator::nowChanged);
            rig.scheduler.advance(1s);
            QCOMPARE(seconds.time(), rig.clock.now());
            QCOMPARE(now.size(), 1);
            QCOMPARE(now.first().first().toDateTime(), rig.clock.now());
        }
        QCOMPARE(rig.scheduler.pendingCount(), 0);
        rig.scheduler.advance(5s);
    }
};

QTEST_GUILESS_MAIN(TestTickCoordinator)
#include "tst_tickcoordinator.moc"
