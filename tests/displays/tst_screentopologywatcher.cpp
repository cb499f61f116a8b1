#include "ManualClock.h"
#include "ManualScheduler.h"
#include "displays/LayoutProfileResolver.h"
#include "displays/ScreenTopologyWatcher.h"
#include "platform/null/FixedDisplays.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>

using namespace std::chrono_literals;

namespace tw {

namespace {

ScreenInfo screen(const QString& id, double x, double width, double height = 1080.0) {
    const QRectF frame(x, 0.0, width, height);
    return ScreenInfo{id, id, frame, frame.adjusted(0, 0, 0, -25), x == 0.0};
}

const QList<ScreenInfo> laptop{screen(QStringLiteral("laptop"), 0, 1512, 982)};
const QList<ScreenInfo> laptopAndMonitor{screen(QStringLiteral("laptop"), 0, 1512, 982),
                                         screen(QStringLiteral("monitor"), 1512, 2560, 1440)};

} // namespace

class TestScreenTopologyWatcher : public QObject {
    Q_OBJECT

    struct Rig {
        test::ManualClock clock;
        test::ManualScheduler scheduler{&clock};
        FixedDisplays displays{laptop};
        ScreenTopologyWatcher watcher{displays, scheduler};
        QSignalSpy settled{&watcher, &ScreenTopologyWatcher::settled};
        QSignalSpy transitioning{&watcher, &ScreenTopologyWatcher::isTransitioningChanged};

        Rig() { watcher.start(); }
        ScreenTopologyWatcher::Change lastChange() const {
            return settled.last().at(0).value<ScreenTopologyWatcher::Change>();
        }
    };

private Q_SLOTS:
    void quietPeriodRestartsWithEachNotification() {
        Rig rig;
        rig.displays.setScreens(laptopAndMonitor);
        QVERIFY(rig.watcher.isSettling());
        const auto pending = rig.scheduler.pending();
        QCOMPARE(pending.size(), size_t(1));
        QCOMPARE(pending.front().tolerance, ScreenTopologyWatcher::settleTolerance);
        QVERIFY(!pending.front().repeating);
        rig.scheduler.advance(1900ms);
        rig.displays.setScreens(laptopAndMonitor);
        rig.scheduler.advance(1999ms);
        QCOMPARE(rig.settled.count(), 0);
        rig.scheduler.advance(1ms);
        QCOMPARE(rig.settled.count(), 1);
        QCOMPARE(rig.scheduler.elapsed(), 3900ms);
        rig.scheduler.advance(60s);
        QCOMPARE(rig.settled.count(), 1);
        QCOMPARE(rig.scheduler.pendingCount(), 0);
    }

    void realChangeSettlesWithChangedTopology() {
        Rig rig;
        rig.displays.setScreens(laptopAndMonitor);
        QVERIFY(rig.watcher.isTransitioning());
        bool settlingSeen = true;
        bool transitioningSeen = false;
        connect(&rig.watcher, &ScreenTopologyWatcher::settled, this, [&] {
            settlingSeen = rig.watcher.isSettling();
            transitioningSeen = rig.watcher.isTransitioning();
        });
        QTest::ignoreMessage(QtInfoMsg, "Displays settled: 2 screen(s), changed=true");
        rig.scheduler.advance(2s);
        QCOMPARE(rig.settled.count(), 1);
        const auto change = rig.lastChange();
        QVERIFY(change.topologyChanged);
        QCOMPARE(change.displays, LayoutDisplay::currentDisplays(rig.displays));
        // Subscribers re-arrange while the desktop is still veiled, and what they save is kept.
        QVERIFY(!settlingSeen);
        QVERIFY(transitioningSeen);
        QVERIFY(!rig.watcher.isSettling());
        QVERIFY(!rig.watcher.isTransitioning());
    }

    // Events, one per entry: "both", "laptop" or "none" (the screens change), "quietly-both" (they
    // change without a notification), "sleep", "wake", "start", "veiled" (the tiles are veiled now)
    // or a number of milliseconds to pass; then whether each settled set was a change, and how
    // often the tiles were veiled or unveiled.
    void settles_data() {
        QTest::addColumn<QStringList>("events");
        QTest::addColumn<QList<bool>>("changes");
        QTest::addColumn<int>("transitions");
        const auto events = [](const char* text) {
            return QString::fromLatin1(text).split(QLatin1Char(' '));
        };
        QTest::newRow("a sleep that changed nothing settles quietly")
            << events("sleep wake 2000") << QList<bool>{false} << 0;
        QTest::newRow("unplugged and replugged within one period")
            << events("both 1000 laptop veiled 2000") << QList<bool>{false} << 2;
        QTest::newRow("the baseline follows each settled set")
            << events("both 2000 both 2000 laptop 2000") << QList<bool>{true, false, true} << 4;
        QTest::newRow("a set that becomes usable in time settles")
            << events("none 20000 quietly-both 2000") << QList<bool>{true} << 2;
        QTest::newRow("a second start registers nothing")
            << events("start both 2000") << QList<bool>{true} << 2;
    }
    void settles() {
        QFETCH(QStringList, events);
        QFETCH(QList<bool>, changes);
        QFETCH(int, transitions);
        Rig rig;
        for (const QString& event : std::as_const(events)) {
            if (event == QLatin1String("both") || event == QLatin1String("laptop") ||
                event == QLatin1String("none")) {
                rig.displays.setScreens(event == QLatin1String("both")     ? laptopAndMonitor
                                        : event == QLatin1String("laptop") ? laptop
                                                                           : QList<ScreenInfo>{});
            } else if (event == QLatin1String("quietly-both")) {
                const QSignalBlocker quiet(&rig.displays);
                rig.displays.setScreens(laptopAndMonitor);
            } else if (event == QLatin1String("sleep")) {
                Q_EMIT rig.displays.willSleep();
            } else if (event == QLatin1String("wake")) {
                Q_EMIT rig.displays.didWake();
            } else if (event == QLatin1String("veiled")) {
                // Once raised, it stays up until the cycle ends.
                QVERIFY(rig.watcher.isTransitioning());
            } else if (event == QLatin1String("start")) {
                rig.watcher.start();
            } else {
                rig.scheduler.advance(std::chrono::milliseconds(event.toInt()));
            }
        }
        QList<bool> changed;
        for (const auto& arguments : std::as_const(rig.settled)) {
            changed.append(arguments.at(0).value<ScreenTopologyWatcher::Change>().topologyChanged);
        }
        QCOMPARE(changed, changes);
        QCOMPARE(rig.transitioning.count(), transitions);
        QVERIFY(!rig.watcher.isSettling());
        QCOMPARE(rig.scheduler.pendingCount(), 0);
    }

    void unusableSetGivesUpAfterTwelveEvaluations_data() {
        QTest::addColumn<QList<ScreenInfo>>("screens");
        QTest::newRow("no displays") << QList<ScreenInfo>{};
        QTest::newRow("width 1.0") << QList<ScreenInfo>{screen(QStringLiteral("a"), 0, 1.0)};
        QTest::newRow("height 1.0") << QList<ScreenInfo>{screen(QStringLiteral("a"), 0, 800, 1.0)};
        ScreenInfo flatVisible = screen(QStringLiteral("a"), 0, 1920);
        flatVisible.visibleFrame.setHeight(0.5);
        QTest::newRow("visible height 0.5") << QList<ScreenInfo>{flatVisible};
        QTest::newRow("NaN width") << QList<ScreenInfo>{
            screen(QStringLiteral("a"), 0, std::numeric_limits<double>::quiet_NaN())};
    }
    void unusableSetGivesUpAfterTwelveEvaluations() {
        QFETCH(QList<ScreenInfo>, screens);
        Rig rig;
        rig.displays.setScreens(screens);
        QVERIFY(rig.watcher.isTransitioning());
        rig.scheduler.advance(11 * 2s);
        QVERIFY(rig.watcher.isSettling());
        QCOMPARE(rig.scheduler.pendingCount(), 1);
        QTest::ignoreMessage(QtCriticalMsg,
                             "Display topology never became usable — giving up on this change");
        rig.scheduler.advance(2s);
        QVERIFY(!rig.watcher.isSettling());
        QVERIFY(!rig.watcher.isTransitioning());
        QCOMPARE(rig.scheduler.pendingCount(), 0);
        QCOMPARE(rig.settled.count(), 0);

        // The baseline stayed: the next notification starts a fresh cycle against it.
        rig.displays.setScreens(laptop);
        rig.scheduler.advance(2s);
        QCOMPARE(rig.settled.count(), 1);
        QVERIFY(!rig.lastChange().topologyChanged);
    }

    // The machine sleeping and the displays going dark while it runs are the same to the
    // watcher: a monitor that drops off in the dark is not an unplug.
    void sleepCancelsTheCycleUntilWake_data() {
        QTest::addColumn<bool>("screensOnly");
        QTest::newRow("the machine sleeps") << false;
        QTest::newRow("the displays go dark") << true;
    }
    void sleepCancelsTheCycleUntilWake() {
        QFETCH(bool, screensOnly);
        Rig rig;
        rig.displays.setScreens(laptopAndMonitor);
        rig.scheduler.advance(1s);
        if (screensOnly) {
            Q_EMIT rig.displays.screensDidSleep();
        } else {
            Q_EMIT rig.displays.willSleep();
        }
        QVERIFY(rig.watcher.isSettling());
        QVERIFY(!rig.watcher.isTransitioning());
        QCOMPARE(rig.scheduler.pendingCount(), 0);
        // Screens going dark while asleep start cycles whose evaluations do nothing.
        rig.displays.setScreens(laptop);
        rig.scheduler.advance(60s);
        QCOMPARE(rig.settled.count(), 0);
        QVERIFY(rig.watcher.isSettling());

        rig.displays.setScreens(laptopAndMonitor);
        if (screensOnly) {
            Q_EMIT rig.displays.screensDidWake();
        } else {
            Q_EMIT rig.displays.didWake();
        }
        rig.scheduler.advance(2s);
        QCOMPARE(rig.settled.count(), 1);
        QVERIFY(rig.lastChange().topologyChanged);
        QVERIFY(!rig.watcher.isSettling());
    }

    void nothingHappensBeforeStart() {
        test::ManualScheduler scheduler;
        FixedDisplays displays{laptop};
        ScreenTopologyWatcher watcher{displays, scheduler};
        displays.setScreens(laptopAndMonitor);
        QVERIFY(!watcher.isSettling());
        QCOMPARE(scheduler.pendingCount(), 0);
    }

    void looksLikeAChange_data() {
        QTest::addColumn<QList<ScreenInfo>>("screens");
        QTest::addColumn<bool>("withBaseline");
        QTest::addColumn<bool>("expected");
        QTest::newRow("same set") << laptop << true << false;
        QTest::newRow("other set") << laptopAndMonitor << true << true;
        QTest::newRow("no baseline") << laptop << false << true;
        QTest::newRow("empty") << QList<ScreenInfo>{} << true << true;
        QTest::newRow("unusable") << QList<ScreenInfo>{screen(QStringLiteral("laptop"), 0, 1.0)}
                                  << true << true;
        ScreenInfo dockMoved = laptop.first();
        dockMoved.visibleFrame.setWidth(1400);
        QTest::newRow("visible frame only") << QList<ScreenInfo>{dockMoved} << true << false;
    }
    void looksLikeAChange() {
        QFETCH(QList<ScreenInfo>, screens);
        QFETCH(bool, withBaseline);
        QFETCH(bool, expected);
        FixedDisplays baseline{laptop};
        FixedDisplays now{screens};
        const std::optional<QString> since =
            withBaseline ? std::optional(LayoutProfileResolver::topologySignature(
                               LayoutDisplay::currentDisplays(baseline)))
                         : std::nullopt;
        QCOMPARE(
            ScreenTopologyWatcher::looksLikeAChange(LayoutDisplay::currentDisplays(now), since),
            expected);
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestScreenTopologyWatcher)
#include "tst_screentopologywatcher.moc"
