#include "TickRig.h"
#include "tick/TimeSource.h"

#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;
using namespace tw;
using tw::test::TickRig;

class TestTimeSource : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void grainDecidesHowOftenAViewWakes_data() {
        QTest::addColumn<TimeGrain>("grain");
        QTest::addColumn<int>("wakes");
        QTest::addColumn<QTime>("shown");
        // 120 ticks from 09:26:53.25 to 09:28:53.25: two minutes turn over on the way, and a
        // minutes view shows the tick that turned the last one.
        QTest::newRow("seconds") << TimeGrain::Seconds << 120 << QTime(9, 28, 53, 250);
        QTest::newRow("minutes") << TimeGrain::Minutes << 2 << QTime(9, 28, 0, 250);
    }
    void grainDecidesHowOftenAViewWakes() {
        QFETCH(TimeGrain, grain);
        QFETCH(int, wakes);
        TickRig rig;
        TimeSource source(grain, rig.ticker, rig.minutes);
        QSignalSpy changed(&source, &TimeSource::timeChanged);
        rig.ticker.setActive(true);
        rig.scheduler.advance(120s);
        QCOMPARE(changed.size(), wakes);
        QTEST(source.time().time(), "shown");
        QCOMPARE(changed.last().first().toDateTime(), source.time());
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

    // A launch pins the time before the ticker is made; views start with it, ticks run on.
    void aPinnedTimeIsWhatViewsStartWith() {
        TickRig rig;
        const QDateTime pin(QDate(2026, 3, 15), QTime(7, 30));
        rig.snapshot.setPinned(pin);
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
};

QTEST_GUILESS_MAIN(TestTimeSource)
#include "tst_timesource.moc"
