#include "ManualClock.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "tick/AnimationPace.h"
#include "tick/Cadence.h"
#include "tick/MinuteCoordinator.h"
#include "tick/OffsetClock.h"
#include "tick/PaintLedger.h"
#include "tick/SceneClock.h"
#include "tick/SnapshotClock.h"
#include "tick/TickCoordinator.h"
#include "tick/TimeSource.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTimeZone>

using tw::test::row;
using namespace std::chrono_literals;
using namespace tw;
using Seconds = SceneClock::Seconds;
using Paused = SceneClock::Paused;

Q_DECLARE_METATYPE(tw::AnimationPace)

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

QDateTime at(int day, int hour, int minute, int second, int msec = 0) {
    return QDateTime(QDate(2026, 3, day), QTime(hour, minute, second, msec), Qt::UTC);
}

} // namespace

// The one tick timer, the cadence it feeds, the views' time sources it wakes and the clock that
// may pin their time; how fast a scene may run and the time it runs on; what painting cost.
class TestTick : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Steps: D/d the desktop shows/goes, P/p the preview, "i<ms>" a new interval, "+<ms>" time
    // passing. After each of the first three, the timer ("-", or interval@due in ms; its tolerance
    // is always a fifth) and the stamp's seconds; "on"/"off" as the ticker says so, and each new
    // minute the cadence announces. A running timer keeps its phase, a new interval restarts it and
    // takes the time anew, a refused one changes nothing.
    void timer_data() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("log");
        row("desktop joins preview", "P +300 D +300 p +300 d",
            "on, 1000@1000 53.250, 1000@700 53.250, 1000@400 53.250, off, -");
        row("preview joins desktop", "D +300 P +300 d +300 p",
            "on, 1000@1000 53.250, 1000@700 53.250, 1000@400 53.250, off, -");
        row("repeated start", "D +300 D +300 d", "on, 1000@1000 53.250, 1000@700 53.250, off, -");
        row("interval stored for the start", "i2000 D", "-, on, 2000@2000 53.250");
        row("interval restarts", "D +400 i2000", "on, 1000@1000 53.250, 2000@2000 53.650");
        row("same interval keeps the phase", "D +400 i1000",
            "on, 1000@1000 53.250, 1000@600 53.250");
        row("zero refused", "D +400 i0", "on, 1000@1000 53.250, 1000@600 53.250");
        // Ticks feed the cadence; a start seeds it, so the minute that turned while stopped is not
        // announced.
        row("restart in a new minute", "D +5000 d +10000 D +10000 +50000",
            "on, 1000@1000 53.250, off, -, on, 1000@1000 08.250, minute 10:28:00.250");
    }
    void timer() {
        QFETCH(QString, steps);
        TickRig rig;
        QStringList log;
        connect(&rig.ticker, &TickCoordinator::activeChanged, this,
                [&log](bool active) { log << QLatin1String(active ? "on" : "off"); });
        connect(&rig.ticker.cadence(), &Cadence::minutes, this, [&log](const QDateTime& time) {
            log << QStringLiteral("minute ") + time.toString(QStringLiteral("HH:mm:ss.zzz"));
        });
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
            QVERIFY(pending.size() <= 1);
            QVERIFY(pending.empty() || (pending.front().repeating &&
                                        pending.front().tolerance == pending.front().interval / 5));
            log << (pending.empty()
                        ? QStringLiteral("-")
                        : QStringLiteral("%1@%2 %3")
                              .arg(pending.front().interval.count())
                              .arg((pending.front().due - rig.scheduler.elapsed()).count())
                              .arg(rig.ticker.now().toString(QStringLiteral("ss.zzz"))));
        }
        QTEST(log.join(QStringLiteral(", ")), "log");
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
        // Under the pin the uptime runs on; without it the system's time shows again.
        QCOMPARE(rig.snapshot.now(), pin);
        QCOMPARE(rig.snapshot.uptime(), rig.clock.uptime());
        rig.snapshot.setPinned(std::nullopt);
        QCOMPARE(rig.snapshot.now(), rig.clock.now());
    }

    // A seed, then ticks; every announcement in the order it came, as
    // "<beat> <day> <time>" in the tick's own zone.
    void announcements_data() {
        QTest::addColumn<QDateTime>("seed");
        QTest::addColumn<QList<QDateTime>>("ticks");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, QDateTime seed, QList<QDateTime> ticks,
                            const char* expected) {
            QTest::newRow(name) << seed << ticks << QString::fromLatin1(expected);
        };
        row("minutes then days across midnight", at(14, 23, 59, 59, 400), {at(15, 0, 0, 0, 420)},
            "two 15 00:00:00.420, min 15 00:00:00.420, day 15 00:00:00.420");
        row("an hour asleep is one minute", at(14, 9, 26, 53),
            {at(14, 10, 26, 55), at(14, 10, 26, 57)}, "min 14 10:26:55.000");
        row("a seed silences its own minute", at(14, 9, 26, 53),
            {at(14, 9, 26, 59), at(14, 9, 27, 1)}, "min 14 09:27:01.000");
        // Nothing seeded: the first real tick is a new minute and a new day.
        row("an invalid seed or tick is ignored", {}, {QDateTime(), at(14, 9, 26, 53)},
            "min 14 09:26:53.000, day 14 09:26:53.000");
        row("even second", at(14, 9, 26, 52), {at(14, 9, 26, 52)}, "two 14 09:26:52.000");
        row("even, late in the second", at(14, 9, 26, 52), {at(14, 9, 26, 52, 999)},
            "two 14 09:26:52.999");
        row("odd second", at(14, 9, 26, 53), {at(14, 9, 26, 53)}, "");
        const QDateTime epoch = QDateTime::fromSecsSinceEpoch(0, Qt::UTC);
        // Truncation toward zero: -1.5 s becomes -1, odd.
        const QDateTime before1970 = QDateTime::fromMSecsSinceEpoch(-1500, Qt::UTC);
        row("before 1970", before1970, {before1970}, "");
        row("late ticks may skip the two seconds", at(14, 9, 26, 50),
            {at(14, 9, 26, 51, 900), at(14, 9, 26, 53, 50)}, "");
        // The same instant seen from two hours further east: same minute, a day that starts two
        // hours earlier.
        const QDateTime west = at(14, 9, 26, 53).toTimeZone(QTimeZone(3600));
        row("a time-zone change that moves the day", west,
            {west.addSecs(1).toTimeZone(QTimeZone(3 * 3600))},
            "two 14 12:26:54.000, day 14 12:26:54.000");
        // Clocks go from 02:00 to 03:00 that night: a short day, not a new one.
        const QTimeZone berlin("Europe/Berlin");
        const QDateTime evening(QDate(2026, 3, 28), QTime(23, 59, 59), berlin);
        row("daylight saving is not a new day", evening,
            {evening.addSecs(1), QDateTime(QDate(2026, 3, 29), QTime(1, 59, 59), berlin),
             QDateTime(QDate(2026, 3, 29), QTime(3, 0, 1), berlin),
             QDateTime(QDate(2026, 3, 30), QTime(0, 0, 1), berlin)},
            "two 29 00:00:00.000, min 29 00:00:00.000, day 29 00:00:00.000, "
            "min 29 01:59:59.000, min 29 03:00:01.000, min 30 00:00:01.000, day 30 00:00:01.000");
    }
    void announcements() {
        QFETCH(QDateTime, seed);
        QFETCH(QList<QDateTime>, ticks);
        Cadence cadence;
        QStringList log;
        const auto record = [&log](const char* beat) {
            return [&log, beat](const QDateTime& d) {
                log << QLatin1String(beat) + d.toString(QStringLiteral(" d HH:mm:ss.zzz"));
            };
        };
        connect(&cadence, &Cadence::twoSeconds, this, record("two"));
        connect(&cadence, &Cadence::minutes, this, record("min"));
        connect(&cadence, &Cadence::days, this, record("day"));
        cadence.seed(seed);
        QVERIFY(log.isEmpty());
        for (const QDateTime& tick : ticks) {
            cadence.advance(tick);
        }
        QTEST(log.join(QStringLiteral(", ")), "expected");
    }

    void pinFromText_data() {
        QTest::addColumn<QDateTime>("now");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("pinned"); // empty: no pin
        const QDateTime now(QDate(2026, 3, 14), QTime(9, 26, 53));
        const auto row = [&now](const char* name, const char* text, const char* pinned) {
            QTest::newRow(name) << now << QString::fromLatin1(text) << QString::fromLatin1(pinned);
        };
        row("hour and minute: tomorrow", "7:30", "2026-03-15 07:30:00");
        row("midnight", "0:0", "2026-03-15 00:00:00");
        row("unparsable pieces dropped", "x:7:am:30", "2026-03-15 07:30:00");
        row("blank makes a piece unparsable", " 7:30", "");
        row("hour out of range", "25:00", "");
        row("minute out of range", "7:60", "");
        row("negative hour", "-1:30", "");
        row("empty", "", "");
        // Clocks jump from 02:00 to 03:00 in Berlin that night: the first moment after.
        QTest::newRow("a time in a clock-change gap")
            << QDateTime(QDate(2026, 3, 28), QTime(12, 0), QTimeZone("Europe/Berlin")) << "2:30"
            << "2026-03-29 03:00:00";
    }
    void pinFromText() {
        QFETCH(QDateTime, now);
        QFETCH(QString, text);
        const std::optional<QDateTime> pin = SnapshotClock::pinFor(text, now);
        QTEST(pin ? pin->toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) : QString(), "pinned");
        QVERIFY(!pin || pin->timeZone() == now.timeZone());
    }

    // A clock started at a chosen moment reads that moment at once and then runs with the base;
    // an unreadable start leaves the clock alone.
    void offsetClock_data() {
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("read");
        QTest::newRow("local time") << "2026-11-24T08:59:40"
                                    << "2026-11-24T09:00:10";
        QTest::newRow("milliseconds") << "2026-11-24T08:59:40.500"
                                      << "2026-11-24T09:00:10.500";
        QTest::newRow("UTC") << "2026-01-02T03:04:05Z"
                             << "2026-01-02T03:04:35Z";
        QTest::newRow("an offset") << "2026-07-01T12:00:00+02:00"
                                   << "2026-07-01T12:00:30+02:00";
        QTest::newRow("date only") << "2027-05-01"
                                   << "2027-05-01T00:00:30";
        QTest::newRow("blanks around") << " 2026-11-24T08:59:40 "
                                       << "2026-11-24T09:00:10";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("a time alone") << "08:59"
                                      << "";
        QTest::newRow("out of range") << "2026-13-40T25:00:00"
                                      << "";
    }
    void offsetClock() {
        QFETCH(QString, start);
        QFETCH(QString, read);
        test::ManualClock base;
        const auto offset = OffsetClock::offsetFor(start, base.now());
        QCOMPARE(offset.has_value(), !read.isEmpty());
        const OffsetClock clock(base, offset.value_or(0ms));
        base.advance(30s);
        QCOMPARE(clock.uptime(), base.uptime());
        QCOMPARE(clock.now(), offset ? QDateTime::fromString(read, Qt::ISODateWithMs) : base.now());
    }

    void pace_data() {
        QTest::addColumn<AnimationPace>("pace");
        QTest::addColumn<double>("requested");
        QTest::addColumn<double>("expected");
        QTest::newRow("efficient caps at 8") << AnimationPace::efficient() << 30.0 << 8.0;
        QTest::newRow("capped lower") << AnimationPace::capped(12) << 30.0 << 12.0;
        QTest::newRow("capped above request") << AnimationPace::capped(60) << 30.0 << 30.0;
        QTest::newRow("capped negative") << AnimationPace::capped(-1) << 30.0 << 0.0;
        QTest::newRow("paused") << AnimationPace::paused() << 30.0 << 0.0;
        QTest::newRow("smooth") << AnimationPace::smooth() << 120.0 << 120.0;
        QTest::newRow("default is smooth") << AnimationPace() << 60.0 << 60.0;
    }
    void pace() {
        QFETCH(AnimationPace, pace);
        QFETCH(double, requested);
        QTEST(pace.fps(requested), "expected");
    }

    // Calls at wall times in seconds: "p" before one marks it paused, "@" after it gives a pin.
    // The scene times they answer, in order.
    void sceneTime_data() {
        QTest::addColumn<QString>("calls");
        QTest::addColumn<QString>("times");
        row("a frame", "100 100.25", "0 0.25");
        row("a sleep moves one second", "100 3700", "0 1");
        row("a step back moves nothing", "100 40", "0 0");
        row("not a number moves nothing", "100 nan", "0 0");
        row("a pause holds, and its first call after adds nothing",
            "10 10.5 p11 p3611 3611.2 3611.7", "0 0.5 0.5 0.5 0.5 1");
        row("a pin stands and moves neither the scene nor the last wall time", "10 10.5@42 10.75",
            "0 42 0.75");
    }
    void sceneTime() {
        QFETCH(QString, calls);
        SceneClock clock;
        QStringList times;
        for (QString call : calls.split(QLatin1Char(' '))) {
            const Paused paused = call.startsWith(u'p') ? Paused::Yes : Paused::No;
            call.remove(u'p');
            std::optional<Seconds> pin;
            if (const qsizetype at = call.indexOf(u'@'); at >= 0) {
                pin = Seconds(call.mid(at + 1).toDouble());
                call.truncate(at);
            }
            const double wall = call == QLatin1String("nan") ? qQNaN() : call.toDouble();
            times << QString::number(clock.time(Seconds(wall), paused, pin).count());
        }
        QTEST(times.join(QLatin1Char(' ')), "times");
    }

    // Paints written "tile:ms@s", read at a second: "tile=ms/paints", the costliest first.
    void lastMinute_data() {
        QTest::addColumn<QString>("paints");
        QTest::addColumn<int>("at");
        QTest::addColumn<QString>("expected");
        QTest::newRow("nothing") << "" << 0 << "";
        QTest::newRow("summed per tile, costliest first")
            << "a:2@1 b:5@2 a:4@3" << 3 << "a=6/2 b=5/1";
        QTest::newRow("a paint exactly a minute old is gone") << "a:2@0 b:1@1" << 60 << "b=1/1";
        QTest::newRow("everything older than a minute") << "a:2@0 b:1@1" << 200 << "";
        QTest::newRow("ties by id") << "b:3@1 a:3@1" << 1 << "a=3/1 b=3/1";
    }
    void lastMinute() {
        QFETCH(QString, paints);
        QFETCH(int, at);
        const auto id = [](QStringView name) {
            return QUuid::fromString(QStringLiteral("{00000000-0000-0000-0000-00000000000%1}")
                                         .arg(name == u"a" ? 1 : 2));
        };
        PaintLedger ledger;
        for (const QString& paint : paints.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            const QStringList parts = paint.split(QRegularExpression(QStringLiteral("[:@]")));
            ledger.record(id(parts[0]), std::chrono::milliseconds(parts[1].toInt()),
                          std::chrono::seconds(parts[2].toInt()));
        }
        QStringList got;
        for (const PaintLedger::Cost& cost : ledger.lastMinute(std::chrono::seconds(at))) {
            got << QStringLiteral("%1=%2/%3")
                       .arg(cost.id == id(u"a") ? u"a" : u"b")
                       .arg(std::chrono::duration_cast<std::chrono::milliseconds>(cost.spent)
                                .count())
                       .arg(cost.paints);
        }
        QTEST(got.join(QLatin1Char(' ')), "expected");
    }
};

QTEST_GUILESS_MAIN(TestTick)
#include "tst_tick.moc"
