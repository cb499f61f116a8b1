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
    // Steps: D/d the desktop shows/goes, P/p the preview, "i<ms>" a new interval, "+<ms>" time
    // passing. After each of the first three, the timer ("off", or interval/tolerance@due in ms)
    // and the stamp's seconds; "active"/"inactive" as the ticker says so. A running timer keeps
    // its phase, a new interval restarts it and takes the time anew, a refused one changes nothing.
    void timer_data() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("log");
        const auto row = [](const char* name, const char* steps, const char* log) {
            QTest::newRow(name) << QString::fromLatin1(steps) << QString::fromLatin1(log);
        };
        row("desktop", "D +300 d", "active, 1000/200@1000 53.250, inactive, off");
        row("preview", "P +300 p", "active, 1000/200@1000 53.250, inactive, off");
        row("desktop joins preview", "P +300 D +300 p +300 d",
            "active, 1000/200@1000 53.250, 1000/200@700 53.250, 1000/200@400 53.250, inactive, "
            "off");
        row("preview joins desktop", "D +300 P +300 d +300 p",
            "active, 1000/200@1000 53.250, 1000/200@700 53.250, 1000/200@400 53.250, inactive, "
            "off");
        row("repeated start", "D +300 D +300 d",
            "active, 1000/200@1000 53.250, 1000/200@700 53.250, inactive, off");
        row("interval stored for the start", "i2000 D", "off, active, 2000/400@2000 53.250");
        row("interval restarts", "D +400 i2000",
            "active, 1000/200@1000 53.250, 2000/400@2000 53.650");
        row("same interval keeps the phase", "D +400 i1000",
            "active, 1000/200@1000 53.250, 1000/200@600 53.250");
        row("zero refused", "D +400 i0", "active, 1000/200@1000 53.250, 1000/200@600 53.250");
        row("negative refused", "D +400 i-5", "active, 1000/200@1000 53.250, 1000/200@600 53.250");
    }
    void timer() {
        QFETCH(QString, steps);
        TickRig rig;
        QStringList log;
        connect(&rig.ticker, &TickCoordinator::activeChanged, this,
                [&log](bool active) { log << QLatin1String(active ? "active" : "inactive"); });
        // No timer until something shows.
        rig.scheduler.advance(1h);
        QCOMPARE(rig.scheduler.pendingCount(), 0);
        for (const QString& step : steps.split(QLatin1Char(' '))) {
            const QChar what = step.front();
            if (what == u'+') {
                rig.scheduler.advance(std::chrono::milliseconds(step.mid(1).toInt()));
                continue;
            }
            if (what == u'i') {
                rig.ticker.setInterval(std::chrono::milliseconds(step.mid(1).toInt()));
            } else if (what.toLower() == u'd') {
                rig.ticker.setActive(what.isUpper());
            } else {
                rig.ticker.setPreviewActive(what.isUpper());
            }
            const auto pending = rig.scheduler.pending();
            QCOMPARE(rig.ticker.isActive(), !pending.empty());
            QVERIFY(pending.size() <= 1 && (pending.empty() || pending.front().repeating));
            log << (pending.empty()
                        ? QStringLiteral("off")
                        : QStringLiteral("%1/%2@%3 %4")
                              .arg(pending.front().interval.count())
                              .arg(pending.front().tolerance.count())
                              .arg((pending.front().due - rig.scheduler.elapsed()).count())
                              .arg(rig.ticker.now().toString(QStringLiteral("ss.zzz"))));
        }
        QTEST(log.join(QStringLiteral(", ")), "log");
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
