#include "ManualScheduler.h"
#include "TestRows.h"
#include "lockscreen/LockScreenController.h"
#include "lockscreen/LockScreenLayout.h"
#include "lockscreen/LockScreenPolicy.h"
#include "lockscreen/LockScreenSystemUI.h"
#include "platform/LockScreenSurface.h"
#include "platform/null/MemoryDefaults.h"

#include <QTest>

using tw::test::row;
using namespace tw;
namespace Layout = LockScreenLayout;

namespace {

WidgetInstance widget(const QString& kind, WidgetSize size, WidgetSettings settings = {}) {
    WidgetInstance instance;
    instance.kind = kind;
    instance.size = size;
    if (!settings.isEmpty()) {
        instance.settings = settings;
    }
    return instance;
}

// Every placement legal on the screen and clear of those before it.
void verifyLegalAndApart(const QList<WidgetInstance>& widgets,
                         const QList<Layout::Placement>& placements, const QSizeF& screen) {
    QList<QRectF> taken;
    for (const Layout::Placement& placement : placements) {
        const QPointF centre = placement.second;
        const auto it =
            std::find_if(widgets.cbegin(), widgets.cend(),
                         [&placement](const WidgetInstance& w) { return w.id == placement.first; });
        QVERIFY(it != widgets.cend());
        QVERIFY2(Layout::isLegal(centre, *it, screen), qPrintable(it->kind));
        QVERIFY2(Layout::isFree(centre, *it, taken), qPrintable(it->kind));
        const QSizeF size = Layout::pixelSize(*it);
        taken.append({centre - QPointF(size.width() / 2, size.height() / 2), size});
    }
}

WidgetInstance placed(const QString& kind) {
    WidgetSettings settings;
    Layout::store(QPointF(100, 100), settings, QSizeF(1440, 900));
    return widget(kind, WidgetSize::small, settings);
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

// The lock screen: what may show there, where, and the controller that shows it while the
// screen is locked.
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
        row("lock U L", "session reports locked", "shown 0 1/0");
        row("lock U U U U U", "session reports unlocked", "suspended 5 1/0");
        row("lock U U U U U U", "lock surface removed (unlocked for 6 readings)", "hidden 0 1/1");
        row("lock unlocked", "ignored unlocked: the screen is still locked", "shown 0 1/0");
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

    void policy_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("choice");
        QTest::addColumn<bool>("shows");
        QTest::addColumn<bool>("warns");
        row("public", "clock", "", true, false);
        row("public hidden by hand", "weather", "hide", false, false);
        row("personal", "clipboard", "", false, true);
        row("personal shown by hand still warns", "stickynote", "show", true, true);
        row("not a choice keeps the default", "calendar", "yes", false, true);
        row("unknown kind stays off", "custom.mine", "", false, false);
        row("warned yet not listed as personal", "appusage", "", false, true);
    }
    void policy() {
        QFETCH(QString, kind);
        QFETCH(QString, choice);
        WidgetSettings settings;
        if (!choice.isEmpty()) {
            settings.insert(LockScreenPolicy::overrideKey, choice);
        }
        QTEST(LockScreenPolicy::shows(widget(kind, WidgetSize::small, settings)), "shows");
        QTEST(LockScreenPolicy::privacyNote(kind).has_value(), "warns");
    }

    // A small tile (96 points) on a 1000 × 1000 screen: the system's regions it meets, touching
    // included, and whether it may stand there.
    void legality_data() {
        QTest::addColumn<QPointF>("centre");
        QTest::addColumn<QString>("regions");
        QTest::addColumn<bool>("legal");
        row("flush with the top-left corner", QPointF(48, 48), "", true);
        row("past the left edge", QPointF(47, 48), "", false);
        row("touching the clock", QPointF(232, 100), "clock", false);
        row("just short of it", QPointF(231.9, 100), "", true);
        row("between clock and login", QPointF(500, 300), "clock,login", false);
        row("over the footer", QPointF(300, 940), "footer", false);
    }
    void legality() {
        QFETCH(QPointF, centre);
        const WidgetInstance clock = widget(QStringLiteral("clock"), WidgetSize::small);
        const QSizeF screen(1000, 1000);
        const QRectF unit = Layout::unitRect(clock, centre, screen);
        QTEST(LockScreenSystemUI::collisions(unit).join(QLatin1Char(',')), "regions");
        QTEST(Layout::isLegal(centre, clock, screen), "legal");
    }

    void carry_data() {
        QTest::addColumn<double>("pos");
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("scale");
        QTest::addColumn<double>("expected");
        // To a span of 2000.
        row("near edge, scaled", 100.0, 1000.0, 2.0, 200.0);
        row("centre band edge", 570.0, 1000.0, 1.0, 1070.0);
        row("just past the band", 571.0, 1000.0, 1.0, 1571.0);
        row("below the band", 429.0, 1000.0, 1.0, 429.0);
        row("no source span", 300.0, 0.0, 1.0, 300.0);
    }
    void carry() {
        QFETCH(double, pos);
        QFETCH(double, from);
        QFETCH(double, scale);
        QTEST(Layout::carry(pos, from, 2000, scale), "expected");
    }

    void positionsTravelBetweenDisplays() {
        // Set on a 1440 × 900 design at the far right, read on 2560 × 1440.
        WidgetSettings settings;
        Layout::store(QPointF(1340, 100), settings, QSizeF(1440, 900));
        WidgetInstance placed = widget(QStringLiteral("clock"), WidgetSize::small, settings);
        QCOMPARE(Layout::position(placed, QSizeF(2560, 1440)), QPointF(2460, 100));
        QVERIFY(!Layout::isInheritingPosition(placed));

        Layout::clearPosition(*placed.settings);
        QVERIFY(Layout::isInheritingPosition(placed));
        QCOMPARE(Layout::position(placed, QSizeF(2560, 1440)), std::nullopt);
        placed.col = 2;
        placed.row = 1;
        // Mirrors the grid from the top-left margin.
        QCOMPARE(Layout::position(placed, QSizeF(2000, 1000)),
                 QPointF(50 + 216 + 48, 25 + 108 + 48));

        placed.settings->insert(Layout::xKey, QStringLiteral("12"));
        placed.settings->insert(Layout::yKey, QStringLiteral("12"));
        placed.settings->insert(Layout::designWidthKey, QStringLiteral("wide"));
        placed.settings->insert(Layout::designHeightKey, QStringLiteral("900"));
        QCOMPARE(Layout::position(placed, QSizeF(2000, 1000)), std::nullopt);

        QCOMPARE(Layout::snap(QPointF(500 + 50, 500 - 60), QSizeF(1000, 1000)),
                 QPointF(500, 500 - 108));
    }

    // "lockSize" when the kind allows it, else the widget's own; points at the widget's scale.
    void size() {
        for (const auto& [lockSize, expected] :
             {std::pair("", WidgetSize::wide), std::pair("banner", WidgetSize::banner),
              std::pair("grand", WidgetSize::wide), std::pair("Large", WidgetSize::wide)}) {
            WidgetSettings settings{{QStringLiteral("tileScale"), QStringLiteral("1.5")}};
            if (*lockSize) {
                settings.insert(Layout::sizeKey, QLatin1String(lockSize));
            }
            const WidgetInstance clock =
                widget(QStringLiteral("clock"), WidgetSize::wide, settings);
            QCOMPARE(Layout::size(clock), expected);
            QCOMPARE(Layout::pixelSize(clock), nominalPixelSize(expected) * 1.5);
        }
    }

    // Widgets stacked on one spot, on the clock and beyond the screen, with and without positions:
    // whatever is resolved is legal, overlaps nothing, and one already well placed stays put.
    void resolvedPositionsAreLegalAndApart() {
        const QSizeF screen(1440, 900);
        QList<WidgetInstance> widgets;
        const auto add = [&](const QString& kind, WidgetSize size, std::optional<QPointF> at) {
            WidgetSettings settings;
            if (at) {
                Layout::store(*at, settings, screen);
            }
            widgets.append(widget(kind, size, settings));
        };
        add(QStringLiteral("weather"), WidgetSize::large, QPointF(200, 450));
        add(QStringLiteral("clock"), WidgetSize::wide, QPointF(200, 450));
        add(QStringLiteral("battery"), WidgetSize::small, QPointF(720, 100));
        add(QStringLiteral("system"), WidgetSize::huge, QPointF(1500, 1000));
        add(QStringLiteral("clipboard"), WidgetSize::small, QPointF(1000, 100));
        for (int i = 0; i < 8; ++i) {
            add(QStringLiteral("moon"), WidgetSize::small, std::nullopt);
        }
        const QList<Layout::Placement> resolved = Layout::resolvedPositions(widgets, screen);
        // All but the personal clipboard.
        QCOMPARE(resolved.size(), widgets.size() - 1);
        QVERIFY(std::none_of(resolved.cbegin(), resolved.cend(),
                             [&](const auto& p) { return p.first == widgets.at(4).id; }));
        QCOMPARE(resolved.front().second, QPointF(200, 450));
        verifyLegalAndApart(widgets, resolved, screen);

        const WidgetInstance big = widget(QStringLiteral("system"), WidgetSize::grand);
        QCOMPARE(Layout::nearestLegal(QPointF(50, 50), big, QSizeF(100, 100), {}), std::nullopt);
        QVERIFY(Layout::resolvedPositions({big}, QSizeF(100, 100)).isEmpty());
    }

    void autoArrangeFillsFromTheEdges() {
        const QSizeF screen(1000, 1000);
        QList<WidgetInstance> widgets(12, widget(QStringLiteral("moon"), WidgetSize::small));
        for (WidgetInstance& w : widgets) {
            w.id = QUuid::createUuid();
        }
        const QList<Layout::Placement> arranged = Layout::autoArrange(widgets, screen);
        QCOMPARE(arranged.size(), 12);
        QCOMPARE(arranged.front().second, QPointF(25 + 48, 25 + 48));
        // Eight fit down the left column above 0.97 of the height; the ninth starts on the right.
        QCOMPARE(arranged.at(7).second, QPointF(73, 25 + 7 * 108 + 48));
        QCOMPARE(arranged.at(8).second, QPointF(1000 - 25 - 48, 25 + 48));
        verifyLegalAndApart(widgets, arranged, screen);
    }
};

QTEST_GUILESS_MAIN(TestLockScreenController)
#include "tst_lockscreencontroller.moc"
