// The timers on the desktop's store and a manual clock: ends that pass while the program runs
// ring and tell, ends that passed while it was away ring nothing, and a press on a ringing tile
// only silences it.
#include "ManualScheduler.h"
#include "desk/DeskSettings.h"
#include "desk/DeskTimers.h"
#include "desk/PomodoroState.h"
#include "desk/TimerState.h"
#include "grid/GridStore.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullNotifications.h"
#include "platform/null/SilentSoundPlayer.h"

#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;

namespace {

struct Fixture {
    QTemporaryDir dir;
    ManualClock clock;
    ManualScheduler scheduler{&clock};
    WidgetRegistry registry;
    GridStore grid{{.clock = clock, .scheduler = scheduler, .registry = registry},
                   dir.filePath(QStringLiteral("grid.json"))};
    SilentSoundPlayer sounds;
    NullNotifications notifications;
    std::unique_ptr<DeskTimers> desk;

    QUuid add(const char* kind, const WidgetSettings& settings = {}) {
        return grid.addFree(QLatin1String(kind), std::nullopt, settings)->id;
    }
    void start() {
        desk = std::make_unique<DeskTimers>(DeskTimers::Services{.grid = grid,
                                                                 .clock = clock,
                                                                 .scheduler = scheduler,
                                                                 .sounds = sounds,
                                                                 .notifications = &notifications});
    }
    WidgetSettings settings(const QUuid& id) const {
        return grid.instance(id)->settings.value_or(WidgetSettings());
    }
};

} // namespace

class TestDeskTimers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // A timer and a pomodoro phase that ended before the program started: the timer reads
    // finished at its end, the pomodoro waits at its next phase, and nothing rings or tells.
    void endedWhileAway() {
        Fixture f;
        const QString past = DeskSettings::fromMoment(f.clock.now().addSecs(-90));
        const QUuid timer = f.add("timer", {{QStringLiteral("endsAt"), past}});
        const QUuid pomodoro =
            f.add("pomodoro", {{QStringLiteral("pomoEnds"), past},
                               {QStringLiteral("auto"), QStringLiteral("true")}});
        f.start();
        f.scheduler.advance(1h);
        QCOMPARE(TimerState::from(f.settings(timer)).phase(f.clock.now()),
                 TimerState::Phase::finished);
        const PomodoroState phase = PomodoroState::from(f.settings(pomodoro));
        QCOMPARE(phase.phase, PomodoroPhase::shortBreak);
        QCOMPARE(phase.completed, 1);
        QVERIFY(!phase.isRunning());
        QVERIFY(f.sounds.played().isEmpty());
        QVERIFY(f.notifications.shown().isEmpty());
        QVERIFY(f.desk->board().ringing.isEmpty());
    }

    // A timer started on the tile rings at its end, tells the person only when the tile is out
    // of sight, and the next press silences it without starting it again.
    void endsWhileRunning_data() {
        QTest::addColumn<bool>("inView");
        QTest::newRow("in view") << true;
        QTest::newRow("covered") << false;
    }
    void endsWhileRunning() {
        QFETCH(bool, inView);
        Fixture f;
        const QUuid id =
            f.add("timer", {{QStringLiteral("minutes"), QStringLiteral("2")},
                            {QStringLiteral("sound"), QStringLiteral("hero")},
                            {QStringLiteral("alarm"), QStringLiteral("untilStopped")}});
        f.start();
        f.desk->setInView([inView](const QUuid&) { return inView; });
        const int steps = f.grid.historyRevision();
        f.desk->press(id, DeskAction{});
        // Running state is no step of the person's to undo.
        QCOMPARE(f.grid.historyRevision(), steps);
        f.scheduler.advance(119s);
        QVERIFY(f.sounds.played().isEmpty());
        f.scheduler.advance(2s);
        QCOMPARE(f.sounds.played(), QStringList{QStringLiteral("Hero")});
        QVERIFY(f.desk->board().isRinging(id));
        QCOMPARE(f.notifications.shown().size(), inView ? 0 : 1);
        f.scheduler.advance(10s);
        const WidgetSettings finished = f.settings(id);
        f.desk->press(id, DeskAction{});
        QVERIFY(!f.desk->board().isRinging(id));
        QCOMPARE(f.settings(id), finished);
        const auto plays = f.sounds.played().size();
        f.scheduler.advance(1h);
        QCOMPARE(f.sounds.played().size(), plays);
        f.desk->press(id, DeskAction{});
        QCOMPARE(TimerState::from(f.settings(id)).phase(f.clock.now()), TimerState::Phase::idle);
    }

    // With "auto" a pomodoro runs its phases one after another, a sound at each end; a skip by
    // hand plays nothing and waits.
    void pomodoroGoesOn() {
        Fixture f;
        const QUuid id = f.add("pomodoro", {{QStringLiteral("work"), QStringLiteral("2")},
                                            {QStringLiteral("short"), QStringLiteral("1")},
                                            {QStringLiteral("rounds"), QStringLiteral("2")},
                                            {QStringLiteral("auto"), QStringLiteral("true")}});
        f.start();
        f.desk->press(id, DeskAction{});
        f.scheduler.advance(121s);
        PomodoroState state = PomodoroState::from(f.settings(id));
        QCOMPARE(state.phase, PomodoroPhase::shortBreak);
        QVERIFY(state.isRunning());
        f.scheduler.advance(60s);
        QCOMPARE(PomodoroState::from(f.settings(id)).phase, PomodoroPhase::work);
        QCOMPARE(f.sounds.played(), QStringList(2, QStringLiteral("Glass")));
        f.desk->press(id, DeskAction{.kind = DeskAction::Kind::skip});
        state = PomodoroState::from(f.settings(id));
        QCOMPARE(state.phase, PomodoroPhase::longBreak);
        QVERIFY(!state.isRunning());
        f.scheduler.advance(1h);
        QCOMPARE(f.sounds.played().size(), 2);
        QCOMPARE(f.scheduler.pendingCount(), 0);
    }
};

QTEST_GUILESS_MAIN(TestDeskTimers)
#include "tst_desktimers.moc"
