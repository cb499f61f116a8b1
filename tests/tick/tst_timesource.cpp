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
using tw::test::ManualClock;
using tw::test::ManualScheduler;

namespace {

struct Rig {
    Rig()
        : scheduler(&clock) {}
    ManualClock clock{QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53, 250))};
    SnapshotClock snapshot{clock};
    ManualScheduler scheduler;
    TickCoordinator ticker{scheduler, clock, snapshot};
    MinuteCoordinator minutes{ticker};
};

} // namespace

class TestTimeSource : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void grainDecidesHowOftenAViewWakes_data() {
        QTest::addColumn<TimeGrain>("grain");
        QTest::addColumn<int>("wakes");
        // 120 ticks from 09:26:53.25 to 09:28:53.25: two minutes turn over on the way.
        QTest::newRow("seconds") << TimeGrain::Seconds << 120;
        QTest::newRow("minutes") << TimeGrain::Minutes << 2;
    }
    void grainDecidesHowOftenAViewWakes() {
        QFETCH(TimeGrain, grain);
        QFETCH(int, wakes);
        Rig rig;
        TimeSource source(grain, rig.ticker, rig.minutes);
        QSignalSpy changed(&source, &TimeSource::timeChanged);
        rig.ticker.setActive(true);
        rig.scheduler.advance(120s);
        QCOMPARE(changed.size(), wakes);
        QCOMPARE(changed.last().first().toDateTime(), source.time());
    }

    void minutesShowTheTickThatTurnedTheMinute() {
        Rig rig;
        TimeSource source(TimeGrain::Minutes, rig.ticker, rig.minutes);
        rig.ticker.setActive(true);
        rig.scheduler.advance(30s);
        const QDateTime turn(QDate(2026, 3, 14), QTime(9, 27, 0, 250));
        QCOMPARE(source.time(), turn);
        QCOMPARE(rig.minutes.now(), turn);
    }

    void aViewAppearingAfterALongStopShowsTheCurrentTime() {
        Rig rig;
        rig.ticker.setActive(true);
        rig.scheduler.advance(10s);
        rig.ticker.setActive(false);
        const QDateTime stale = rig.minutes.now();
        rig.scheduler.advance(3h);
        TimeSource source(TimeGrain::Minutes, rig.ticker, rig.minutes);
        QCOMPARE(rig.minutes.now(), stale);
        QCOMPARE(source.time(), rig.clock.now());

        // Shown again later, still stopped: appearing takes the current time once more.
        rig.scheduler.advance(2h);
        QSignalSpy changed(&source, &TimeSource::timeChanged);
        source.reseed();
        QCOMPARE(changed.size(), 1);
        QCOMPARE(source.time(), rig.clock.now());
    }

    void aPinnedTimeIsWhatViewsStartWith() {
        Rig rig;
        const QDateTime pin(QDate(2026, 3, 15), QTime(7, 30));
        rig.snapshot.setPinned(pin);
        MinuteCoordinator minutes(rig.ticker);
        TimeSource source(TimeGrain::Minutes, rig.ticker, minutes);
        QCOMPARE(minutes.now(), pin);
        QCOMPARE(source.time(), pin);
    }

    void aGoneViewIsNotCalled() {
        Rig rig;
        auto* source = new TimeSource(TimeGrain::Seconds, rig.ticker, rig.minutes);
        int calls = 0;
        QObject::connect(source, &TimeSource::timeChanged, source, [&calls] { ++calls; });
        rig.ticker.setActive(true);
        rig.scheduler.advance(2s);
        delete source;
        rig.scheduler.advance(2s);
        QCOMPARE(calls, 2);
    }
};

QTEST_GUILESS_MAIN(TestTimeSource)
#include "tst_timesource.moc"
