#include "ManualScheduler.h"
#include "lockscreen/LockScreenController.h"
#include "lockscreen/LockScreenLayout.h"
#include "platform/LockScreenSurface.h"
#include "platform/null/MemoryDefaults.h"

#include <QTest>

using namespace tw;

namespace {

WidgetInstance placed(const QString& kind) {
    WidgetInstance widget;
    widget.kind = kind;
    widget.settings = WidgetSettings{};
    LockScreenLayout::store(QPointF(100, 100), *widget.settings, QSizeF(1440, 900));
    return widget;
}

// A surface whose session and window server the test sets, counting what was asked of it.
class FakeSurface final : public LockScreenSurface {
public:
    bool available = true, locked = true, elevates = true, up = false, suspended = false;
    int opened = 0, closed = 0;
    double fps = -1;
    std::optional<QString> unavailableReason() const override {
        return available ? std::nullopt : std::optional(QStringLiteral("not here"));
    }
    bool isScreenLocked() const override { return locked; }
    int open(double rate) override {
        ++opened;
        fps = rate;
        up = true;
        return 2;
    }
    bool elevate() override { return up && elevates; }
    void setSuspended(bool on) override { suspended = on; }
    void close() override {
        ++closed;
        up = suspended = false;
    }
    QStringList probe() override { return {}; }
};

} // namespace

class TestLockScreenController : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // A script of steps over a controller started with one clock placed on the lock screen:
    // set-up words first ("gone" starts it again without a way above the lock screen), then "lock"
    // (the session locks), "notice" (a lock notice the session denies), "open" (the session
    // unlocks, nothing said), L/U (a watchdog reading of locked or unlocked), the notices
    // "unlocked", "sleep", "switch", "late" (the uptime ceiling is one reading away) and "stop".
    // Then the log lines that must appear, and the state: shown, suspended or hidden, the unlocked
    // streak, and surfaces opened/closed.
    void script_data() {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("log");
        QTest::addColumn<QString>("state");
        const auto row = [](const char* script, const char* log, const char* state) {
            QTest::newRow(script) << QString::fromLatin1(script) << QString::fromLatin1(log)
                                  << QString::fromLatin1(state);
        };
        row("lock", "lock surface shown: 1 widgets on 2 display(s), at 8.000000 fps",
            "shown 0 1/0");
        row("off lock", "lock surface skipped: switched off in settings", "hidden 0 0/0");
        row("gone lock",
            "lock screen surface unavailable on this system: not here|lock surface skipped: no "
            "elevator installed",
            "hidden 0 0/0");
        row("notice", "lock surface skipped: session does not report the screen as locked",
            "hidden 0 0/0");
        row("clipboard lock",
            "lock surface skipped: no widget has a lock-screen position (1 placed, 0 allowed to "
            "show)",
            "hidden 0 0/0");
        // Whatever was opened and not raised is gone again.
        row("stuck lock", "lock surface not shown: could not raise the windows", "hidden 0 1/1");
        row("lock L L L L", "session reports locked", "shown 0 1/0");
        row("lock U", "session reports unlocked", "suspended 1 1/0");
        row("lock U L", "session reports locked", "shown 0 1/0");
        row("lock U U U U U", "session reports unlocked", "suspended 5 1/0");
        row("lock U U U U U U", "lock surface removed (unlocked for 6 readings)", "hidden 0 1/1");
        row("lock U U U U L U U U U U", "session reports unlocked", "suspended 5 1/0");
        row("lock unlocked", "ignored unlocked: the screen is still locked", "shown 0 1/0");
        row("lock sleep", "ignored sleep: the screen is still locked", "shown 0 1/0");
        row("lock open switch", "deferred session switch: 1 of 6 readings", "suspended 1 1/0");
        row("lock open unlocked unlocked unlocked unlocked unlocked",
            "deferred unlocked: 5 of 6 readings", "suspended 5 1/0");
        row("lock open unlocked unlocked unlocked unlocked unlocked unlocked",
            "lock surface removed (unlocked)", "hidden 0 1/1");
        // The reading at exactly twelve hours keeps it; the one after removes it.
        row("lock late L", "session reports locked", "shown 0 1/0");
        row("lock late L L", "lock surface removed (uptime ceiling)", "hidden 0 1/1");
        row("fps30 lock lock", "lock surface removed (re-presenting)", "shown 0 2/1");
        row("lock stop lock", "lock surface removed (stopped)", "hidden 0 1/1");
    }
    void script() {
        QFETCH(QString, script);
        QFETCH(QString, log);
        test::ManualClock clock;
        test::ManualScheduler scheduler{&clock};
        MemoryDefaults defaults;
        AppSettings settings{defaults};
        FakeSurface surface;
        QList<WidgetInstance> widgets{placed(QStringLiteral("clock"))};
        LockScreenController controller{surface, clock, scheduler};
        const auto start = [&] { controller.start(settings, [&widgets] { return widgets; }); };
        start();
        for (const QString& line : log.split(QLatin1Char('|'))) {
            QTest::ignoreMessage(QtInfoMsg, qPrintable(line));
        }
        const auto tick = [&] { scheduler.advance(LockScreenController::watchdogInterval); };
        const auto notice = [&] { Q_EMIT surface.screenLocked(); };
        const QHash<QString, bool> session{{QStringLiteral("lock"), true},
                                           {QStringLiteral("L"), true},
                                           {QStringLiteral("notice"), false},
                                           {QStringLiteral("open"), false},
                                           {QStringLiteral("U"), false}};
        const QHash<QString, std::function<void()>> steps{
            {QStringLiteral("off"), [&] { settings.setLockScreenEnabled(false); }},
            {QStringLiteral("gone"),
             [&] {
                 surface.available = false;
                 start();
             }},
            {QStringLiteral("stuck"), [&] { surface.elevates = false; }},
            {QStringLiteral("clipboard"), [&] { widgets = {placed(QStringLiteral("clipboard"))}; }},
            {QStringLiteral("fps30"), [&] { settings.setLockScreenFPS(30); }},
            {QStringLiteral("lock"), notice},
            {QStringLiteral("notice"), notice},
            {QStringLiteral("open"), [] {}},
            {QStringLiteral("L"), tick},
            {QStringLiteral("U"), tick},
            {QStringLiteral("unlocked"), [&] { Q_EMIT surface.screenUnlocked(); }},
            {QStringLiteral("sleep"), [&] { Q_EMIT surface.willSleep(); }},
            {QStringLiteral("switch"), [&] { Q_EMIT surface.sessionResigned(); }},
            {QStringLiteral("late"),
             [&] {
                 clock.setUptime(clock.uptime() + LockScreenController::uptimeCeiling -
                                 LockScreenController::watchdogInterval);
             }},
            {QStringLiteral("stop"), [&] { controller.stop(); }},
        };
        for (const QString& step : script.split(QLatin1Char(' '))) {
            QVERIFY2(steps.contains(step), qPrintable(step));
            surface.locked = session.value(step, surface.locked);
            steps[step]();
        }
        const bool showing = controller.isShowing();
        QCOMPARE(surface.up, showing);
        QCOMPARE(scheduler.pendingCount(), showing ? 1 : 0);
        QCOMPARE(surface.fps, surface.opened ? settings.lockScreenFPS() : -1.0);
        QTEST(QStringLiteral("%1 %2 %3/%4")
                  .arg(QLatin1String(!showing            ? "hidden"
                                     : surface.suspended ? "suspended"
                                                         : "shown"))
                  .arg(controller.unlockedStreak())
                  .arg(surface.opened)
                  .arg(surface.closed),
              "state");
    }
};

QTEST_GUILESS_MAIN(TestLockScreenController)
#include "tst_lockscreencontroller.moc"
