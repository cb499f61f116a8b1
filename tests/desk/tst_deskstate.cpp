// The timers' state as their settings keep it, driven through presses and time on a manual
// clock; every step goes through the stored form, as a quit between presses would.
#include "ManualClock.h"
#include "desk/PomodoroState.h"
#include "desk/StopwatchState.h"
#include "desk/TimerState.h"

#include <QTest>

using namespace tw;
using namespace tw::test;

namespace {

// Steps separated by blanks: "+N" lets N seconds pass, a word presses that control.
template <typename Press>
void play(const QString& steps, ManualClock& clock, Press press) {
    for (const QString& step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (step.startsWith(QLatin1Char('+'))) {
            clock.advance(std::chrono::milliseconds(qRound64(step.mid(1).toDouble() * 1000)));
        } else {
            press(step);
        }
    }
}

// "key=value key=value".
WidgetSettings settingsOf(const QString& text) {
    WidgetSettings settings;
    for (const QString& pair : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        settings.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    }
    return settings;
}

} // namespace

class TestDeskState : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void timer_data() {
        QTest::addColumn<QString>("minutes");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<double>("remaining");
        QTest::addColumn<int>("phase");
        using P = TimerState::Phase;
        QTest::newRow("idle shows the full time") << "5"
                                                  << "+30" << 300.0 << int(P::idle);
        QTest::newRow("pauses sum, the time away does not count")
            << "5"
            << "toggle +60 toggle +30 toggle +60" << 180.0 << int(P::running);
        QTest::newRow("paused stands still") << "5"
                                             << "toggle +90 toggle +500" << 210.0 << int(P::paused);
        QTest::newRow("runs out and stays finished")
            << "1"
            << "toggle +61 +3600" << 0.0 << int(P::finished);
        QTest::newRow("a press after the end goes back to idle")
            << "1"
            << "toggle +61 toggle" << 60.0 << int(P::idle);
        QTest::newRow("reset while running") << "10"
                                             << "toggle +5 reset" << 600.0 << int(P::idle);
        QTest::newRow("a new length stops it") << "10"
                                               << "toggle +5 min:3" << 180.0 << int(P::idle);
        QTest::newRow("minutes held to 1") << "0"
                                           << "" << 60.0 << int(P::idle);
        QTest::newRow("minutes held to 120") << "999"
                                             << "" << 7200.0 << int(P::idle);
        QTest::newRow("unreadable minutes are 5") << "five"
                                                  << "" << 300.0 << int(P::idle);
    }
    void timer() {
        QFETCH(double, remaining);
        QFETCH(int, phase);
        QFETCH(QString, minutes);
        QFETCH(QString, steps);
        ManualClock clock;
        WidgetSettings settings{{QStringLiteral("minutes"), minutes}};
        play(steps, clock, [&](const QString& press) {
            if (press == QLatin1String("toggle")) {
                settings = TimerState::toggled(settings, clock.now());
            } else if (press == QLatin1String("reset")) {
                settings = TimerState::reset(settings);
            } else {
                settings = TimerState::withMinutes(settings, press.mid(4).toInt());
            }
        });
        const TimerState state = TimerState::from(settings);
        QCOMPARE(state.remaining(clock.now()), remaining);
        QCOMPARE(int(state.phase(clock.now())), phase);
    }

    // Damaged stored values count as absent; a paused remainder is held to the timer's length.
    void timerStoredValues_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<int>("phase");
        QTest::addColumn<double>("remaining");
        using P = TimerState::Phase;
        QTest::newRow("end far off") << "endsAt"
                                     << "1e300" << int(P::idle) << 300.0;
        QTest::newRow("end not a number") << "endsAt"
                                          << "nan" << int(P::idle) << 300.0;
        QTest::newRow("end before 1970") << "endsAt"
                                         << "-5" << int(P::idle) << 300.0;
        QTest::newRow("paused longer than the timer") << "paused"
                                                      << "9999" << int(P::paused) << 300.0;
        QTest::newRow("paused below zero") << "paused"
                                           << "-3" << int(P::paused) << 0.0;
        QTest::newRow("paused unreadable") << "paused"
                                           << "x" << int(P::idle) << 300.0;
    }
    void timerStoredValues() {
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(int, phase);
        QFETCH(double, remaining);
        const TimerState state = TimerState::from(
            settingsOf(QStringLiteral("minutes=5 ") + key + QLatin1Char('=') + value));
        const QDateTime now = ManualClock().now();
        QCOMPARE(int(state.phase(now)), phase);
        QCOMPARE(state.remaining(now), remaining);
    }

    // Each advance from the first work phase; "*" marks a phase that started by itself.
    void pomodoroRounds_data() {
        QTest::addColumn<int>("rounds");
        QTest::addColumn<bool>("autoContinues");
        QTest::addColumn<bool>("byHand");
        QTest::addColumn<QString>("phases");
        QTest::newRow("rounds of 2")
            << 2 << false << false << "shortBreak work longBreak work shortBreak";
        QTest::newRow("rounds of 4")
            << 4 << false << false << "shortBreak work shortBreak work shortBreak work longBreak";
        QTest::newRow("auto goes on") << 2 << true << false << "shortBreak* work* longBreak* work*";
        QTest::newRow("by hand never starts by itself")
            << 2 << true << true << "shortBreak work longBreak work";
    }
    void pomodoroRounds() {
        QFETCH(QString, phases);
        QFETCH(bool, byHand);
        QFETCH(int, rounds);
        QFETCH(bool, autoContinues);
        ManualClock clock;
        const PomodoroPlan plan{.rounds = rounds};
        PomodoroState state;
        QStringList seen;
        const QStringList expected = phases.split(QLatin1Char(' '));
        for (qsizetype i = 0; i < expected.size(); ++i) {
            state = PomodoroState::from(
                state
                    .advanced(plan, clock.now(), autoContinues,
                              byHand ? PomodoroState::ByHand::yes : PomodoroState::ByHand::no)
                    .appliedTo({{QStringLiteral("rounds"), QString::number(rounds)}}));
            seen << rawValue(state.phase) + (state.isRunning() ? QStringLiteral("*") : QString());
            if (state.endsAt) {
                QCOMPARE(clock.now().secsTo(*state.endsAt), qint64(plan.seconds(state.phase)));
            }
        }
        QCOMPARE(seen, expected);
        // Every break follows a work phase done.
        QCOMPARE(state.completed,
                 int(expected.size() - expected.filter(QStringLiteral("work")).size()));
    }

    void pomodoroStoredValues_data() {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("expected");
        // phase, rounds done, work minutes, rounds, seconds left (-1: none)
        QTest::newRow("defaults") << ""
                                  << "work 0 25 4 -1";
        QTest::newRow("plan clamped") << "work=500 rounds=1"
                                      << "work 0 120 2 -1";
        QTest::newRow("unreadable plan") << "work=x rounds="
                                         << "work 0 25 4 -1";
        QTest::newRow("remainder held to the phase") << "pomoPhase=shortBreak pomoLeft=9999"
                                                     << "shortBreak 0 25 4 300";
        QTest::newRow("unknown phase") << "pomoPhase=nap pomoDone=-4"
                                       << "work 0 25 4 -1";
    }
    void pomodoroStoredValues() {
        QFETCH(QString, stored);
        QFETCH(QString, expected);
        const WidgetSettings settings = settingsOf(stored);
        const PomodoroState state = PomodoroState::from(settings);
        const PomodoroPlan plan = PomodoroPlan::from(settings);
        QCOMPARE(QStringLiteral("%1 %2 %3 %4 %5")
                     .arg(rawValue(state.phase))
                     .arg(state.completed)
                     .arg(plan.work)
                     .arg(plan.rounds)
                     .arg(state.remainingWhenPaused.value_or(-1)),
                 expected);
    }

    void stopwatch_data() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<double>("elapsed");
        QTest::addColumn<QString>("splits");
        QTest::newRow("stops and starts sum") << "toggle +10 toggle +100 toggle +2.5" << 12.5 << "";
        QTest::newRow("laps and their splits")
            << "toggle +10 lap +5 lap +20 lap toggle" << 35.0 << "10 5 20";
        QTest::newRow("no lap while stopped") << "lap toggle +3 toggle lap" << 3.0 << "";
        QTest::newRow("reset") << "toggle +3 lap reset" << 0.0 << "";
    }
    void stopwatch() {
        QFETCH(QString, steps);
        QFETCH(double, elapsed);
        QFETCH(QString, splits);
        ManualClock clock;
        WidgetSettings settings;
        play(steps, clock, [&](const QString& press) {
            const StopwatchState state = StopwatchState::from(settings);
            if (press == QLatin1String("toggle")) {
                settings = state.toggled(clock.now()).appliedTo(settings);
            } else if (press == QLatin1String("lap") && state.isRunning()) {
                settings = state.withLap(clock.now()).appliedTo(settings);
            } else if (press == QLatin1String("reset")) {
                settings = StopwatchState::reset().appliedTo(settings);
            }
        });
        const StopwatchState state = StopwatchState::from(settings);
        QCOMPARE(state.elapsed(clock.now()), elapsed);
        QStringList shown;
        for (const double split : state.lapSplits()) {
            shown << QString::number(split);
        }
        QCOMPARE(shown.join(QLatin1Char(' ')), splits);
    }

    // Past 50 laps the oldest go, and the numbers and splits of the rest stay right.
    void stopwatchDropsOldLaps() {
        ManualClock clock;
        StopwatchState state = StopwatchState().toggled(clock.now());
        for (int i = 0; i < 53; ++i) {
            clock.advance(std::chrono::seconds(i + 1));
            state = StopwatchState::from(state.withLap(clock.now()).appliedTo({}));
        }
        QCOMPARE(state.laps.size(), StopwatchState::maxLaps);
        QCOMPARE(state.droppedLaps, 3);
        QCOMPARE(state.lapNumber(0), 4);
        QCOMPARE(state.lapSplits().first(), 4.0);
        QCOMPARE(state.lapSplits().last(), 53.0);
    }
};

QTEST_GUILESS_MAIN(TestDeskState)
#include "tst_deskstate.moc"
