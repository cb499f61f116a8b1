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

    void settleTimerHasItsTolerance() {
        Rig rig;
        rig.displays.setScreens(laptopAndMonitor);
        const auto pending = rig.scheduler.pending();
        QCOMPARE(pending.size(), size_t(1));
        QCOMPARE(pending.front().interval, ScreenTopologyWatcher::settleDelay);
        QCOMPARE(pending.front().tolerance, 200ms);
        QVERIFY(!pending.front().repeating);
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

    void unchangedSetSettlesQuietly() {
        Rig rig;
        Q_EMIT rig.displays.willSleep();
        Q_EMIT rig.displays.didWake();
        QVERIFY(rig.watcher.isSettling());
        rig.scheduler.advance(2s);
        QCOMPARE(rig.settled.count(), 1);
        QVERIFY(!rig.lastChange().topologyChanged);
        QCOMPARE(rig.transitioning.count(), 0);
        QVERIFY(!rig.watcher.isSettling());
    }

    void unplugAndReplugWithinOnePeriodIsNoChange() {
        Rig rig;
        rig.displays.setScreens(laptopAndMonitor);
        QVERIFY(rig.watcher.isTransitioning());
        rig.scheduler.advance(1s);
        rig.displays.setScreens(laptop);
        // Not re-tested once raised: it stays up until the cycle ends.
        QVERIFY(rig.watcher.isTransitioning());
        rig.scheduler.advance(2s);
        QCOMPARE(rig.settled.count(), 1);
        QVERIFY(!rig.lastChange().topologyChanged);
        QVERIFY(!rig.watcher.isTransitioning());
    }

    void baselineFollowsEachSettledSet() {
        Rig rig;
        rig.displays.setScreens(laptopAndMonitor);
        rig.scheduler.advance(2s);
        rig.displays.setScreens(laptopAndMonitor);
        rig.scheduler.advance(2s);
        rig.displays.setScreens(laptop);
        rig.scheduler.advance(2s);
        QCOMPARE(rig.settled.count(), 3);
        QList<bool> changed;
        for (const auto& arguments : rig.settled) {
            changed.append(arguments.at(0).value<ScreenTopologyWatcher::Change>().topologyChanged);
        }
        QCOMPARE(changed, (QList<bool>{true, false, true}));
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

    void setThatBecomesUsableInTimeSettles() {
        Rig rig;
        rig.displays.setScreens({});
        rig.scheduler.advance(10 * 2s);
        // A geometry read that recovers without a notification still settles the cycle.
        {
            const QSignalBlocker quiet(&rig.displays);
            rig.displays.setScreens(laptopAndMonitor);
        }
        rig.scheduler.advance(2s);
        QCOMPARE(rig.settled.count(), 1);
        QVERIFY(rig.lastChange().topologyChanged);
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

    void secondStartRegistersNothing() {
        Rig rig;
        rig.watcher.start();
        QSignalSpy settling(&rig.watcher, &ScreenTopologyWatcher::isSettlingChanged);
        rig.displays.setScreens(laptopAndMonitor);
        rig.scheduler.advance(2s);
        QCOMPARE(rig.settled.count(), 1);
        QCOMPARE(settling.count(), 2);
        // The baseline of the first start stands: the set differs from it.
        QVERIFY(rig.lastChange().topologyChanged);
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
