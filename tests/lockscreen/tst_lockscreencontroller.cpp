#include "FakeLockScreenSurface.h"
#include "ManualScheduler.h"
#include "lockscreen/LockScreenController.h"
#include "lockscreen/LockScreenLayout.h"
#include "platform/linux/LinuxLockScreenSurface.h"
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

// A controller over the fake, started with one clock placed on the lock screen.
struct Rig {
    test::ManualClock clock;
    test::ManualScheduler scheduler{&clock};
    MemoryDefaults defaults;
    AppSettings settings{defaults};
    test::FakeLockScreenSurface surface;
    QList<WidgetInstance> widgets{placed(QStringLiteral("clock"))};
    LockScreenController controller{surface, clock, scheduler};

    Rig() {
        controller.start(settings, [this] { return widgets; });
    }
    void tick(int readings) {
        scheduler.advance(LockScreenController::watchdogInterval * readings);
    }
    // Locks and brings the surface up.
    void lock() {
        surface.locked = true;
        Q_EMIT surface.screenLocked();
    }
};

} // namespace

class TestLockScreenController : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void locking_data() {
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("available");
        QTest::addColumn<bool>("sessionLocked");
        QTest::addColumn<bool>("elevates");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("log");
        QTest::addColumn<bool>("shows");
        QTest::newRow("up") << true << true << true << true << "clock"
                            << "lock surface shown: 1 widgets on 2 display(s), at 8.000000 fps"
                            << true;
        QTest::newRow("switched off") << false << true << true << true << "clock"
                                      << "lock surface skipped: switched off in settings" << false;
        QTest::newRow("no way above the lock screen")
            << true << false << true << true << "clock"
            << "lock surface skipped: no elevator installed" << false;
        QTest::newRow("notice without a locked session")
            << true << true << false << true << "clock"
            << "lock surface skipped: session does not report the screen as locked" << false;
        QTest::newRow("only personal widgets")
            << true << true << true << true << "clipboard"
            << "lock surface skipped: no widget has a lock-screen position (1 placed, 0 allowed to "
               "show)"
            << false;
        QTest::newRow("raise refused")
            << true << true << true << false << "clock"
            << "lock surface not shown: could not raise the windows" << false;
    }
    void locking() {
        QFETCH(bool, enabled);
        QFETCH(bool, available);
        QFETCH(bool, sessionLocked);
        QFETCH(bool, elevates);
        QFETCH(QString, kind);
        QFETCH(QString, log);
        QFETCH(bool, shows);
        Rig rig;
        rig.settings.setLockScreenEnabled(enabled);
        rig.surface.available = available;
        rig.surface.elevates = elevates;
        rig.widgets = {placed(kind)};
        QTest::ignoreMessage(QtInfoMsg, qPrintable(log));
        rig.surface.locked = sessionLocked;
        Q_EMIT rig.surface.screenLocked();
        QCOMPARE(rig.controller.isShowing(), shows);
        // Whatever was opened and not raised is gone again.
        QCOMPARE(rig.surface.up, shows);
        QCOMPARE(rig.scheduler.pendingCount(), shows ? 1 : 0);
    }

    // The watchdog's readings, one letter a tick: L locked, U unlocked.
    void watchdog_data() {
        QTest::addColumn<QString>("readings");
        QTest::addColumn<bool>("showing");
        QTest::addColumn<bool>("suspended");
        QTest::addColumn<int>("streak");
        QTest::newRow("stays locked") << "LLLL" << true << false << 0;
        QTest::newRow("first unlocked reading hides") << "U" << true << true << 1;
        QTest::newRow("a stray reading costs a flicker") << "UL" << true << false << 0;
        QTest::newRow("five unlocked keep it") << "UUUUU" << true << true << 5;
        QTest::newRow("six unlocked remove it") << "UUUUUU" << false << false << 0;
        QTest::newRow("the streak starts over") << "UUUULUUUUU" << true << true << 5;
    }
    void watchdog() {
        QFETCH(QString, readings);
        QFETCH(bool, showing);
        QFETCH(bool, suspended);
        QFETCH(int, streak);
        Rig rig;
        rig.lock();
        for (const QChar reading : readings) {
            rig.surface.locked = reading == u'L';
            rig.tick(1);
        }
        QCOMPARE(rig.controller.isShowing(), showing);
        QCOMPARE(rig.surface.up, showing);
        QCOMPARE(rig.surface.suspended, suspended);
        QCOMPARE(rig.controller.unlockedStreak(), streak);
        QCOMPARE(rig.scheduler.pendingCount(), showing ? 1 : 0);
    }

    // `times` notices of one kind while the surface is up; the last one's log line.
    void notices_data() {
        QTest::addColumn<int>("notice");
        QTest::addColumn<int>("times");
        QTest::addColumn<bool>("sessionLocked");
        QTest::addColumn<QString>("log");
        QTest::addColumn<bool>("showing");
        QTest::addColumn<bool>("suspended");
        QTest::newRow("unlocked, yet the session says locked")
            << 0 << 1 << true << "ignored unlocked: the screen is still locked" << true << false;
        QTest::newRow("sleep while locked")
            << 1 << 1 << true << "ignored sleep: the screen is still locked" << true << false;
        QTest::newRow("session switch, unlocked")
            << 2 << 1 << false << "deferred session switch: 1 of 6 readings" << true << true;
        QTest::newRow("five unlocked keep it")
            << 0 << 5 << false << "deferred unlocked: 5 of 6 readings" << true << true;
        QTest::newRow("six unlocked remove it")
            << 0 << 6 << false << "lock surface removed (unlocked)" << false << false;
    }
    void notices() {
        QFETCH(int, notice);
        QFETCH(int, times);
        QFETCH(bool, sessionLocked);
        QFETCH(QString, log);
        QFETCH(bool, showing);
        QFETCH(bool, suspended);
        Rig rig;
        rig.lock();
        rig.surface.locked = sessionLocked;
        QTest::ignoreMessage(QtInfoMsg, qPrintable(log));
        const std::array signals{&LockScreenSurface::screenUnlocked, &LockScreenSurface::willSleep,
                                 &LockScreenSurface::sessionResigned};
        for (int i = 0; i < times; ++i) {
            Q_EMIT(rig.surface.*signals.at(notice))();
        }
        QCOMPARE(rig.controller.isShowing(), showing);
        QCOMPARE(rig.surface.suspended, suspended);
    }

    void uptimeCeiling() {
        Rig rig;
        rig.lock();
        // The next reading comes at exactly twelve hours, the one after just past them.
        rig.clock.setUptime(rig.clock.uptime() + LockScreenController::uptimeCeiling -
                            LockScreenController::watchdogInterval);
        rig.tick(1);
        QVERIFY(rig.controller.isShowing());
        QTest::ignoreMessage(QtInfoMsg, "lock surface removed (uptime ceiling)");
        rig.tick(1);
        QVERIFY(!rig.controller.isShowing());
        QCOMPARE(rig.surface.closed, 1);
    }

    void lockingAgainReplacesTheSurface() {
        Rig rig;
        rig.settings.setLockScreenFPS(30);
        rig.lock();
        QTest::ignoreMessage(QtInfoMsg, "lock surface removed (re-presenting)");
        rig.lock();
        QVERIFY(rig.controller.isShowing());
        QCOMPARE(rig.surface.opened, 2);
        QCOMPARE(rig.surface.closed, 1);
        QCOMPARE(rig.surface.fps, 30.0);
        QCOMPARE(rig.scheduler.pendingCount(), 1);

        rig.controller.stop();
        QVERIFY(!rig.surface.up);
        Q_EMIT rig.surface.screenLocked();
        QVERIFY(!rig.controller.isShowing());
    }

    void linuxSaysWhyAtStart() {
        test::ManualClock clock;
        test::ManualScheduler scheduler{&clock};
        MemoryDefaults defaults;
        AppSettings settings{defaults};
        LinuxLockScreenSurface surface;
        LockScreenController controller{surface, clock, scheduler};
        QTest::ignoreMessage(QtInfoMsg, "lock screen surface unavailable on this system: this "
                                        "desktop does not allow drawing above its lock screen: "
                                        "the screen locker owns the screen while it is locked");
        controller.start(settings,
                         [] { return QList<WidgetInstance>{placed(QStringLiteral("clock"))}; });
        QTest::ignoreMessage(QtInfoMsg, "lock surface skipped: no elevator installed");
        controller.screenLocked();
        QVERIFY(!controller.isShowing());
    }
};

QTEST_GUILESS_MAIN(TestLockScreenController)
#include "tst_lockscreencontroller.moc"
