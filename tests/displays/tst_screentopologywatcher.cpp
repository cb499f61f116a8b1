#include "DisplayFixtures.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "displays/LayoutProfileResolver.h"
#include "displays/ScreenTopologyWatcher.h"
#include "platform/null/FixedDisplays.h"

#include <QTest>

using namespace std::chrono_literals;

namespace tw {

using namespace test;

namespace {

const QString laptop = QStringLiteral("laptop@0,0,1512x982*^957");
const QString both = laptop + QStringLiteral(";monitor@1512,0,2560x1440^1415");

// Plays the events, one per word: "start"; "both", "laptop", "none" or "=<displays>" (the
// screens change), "quietly-both" (they change without a notification); "sleep" and "wake" (the
// machine), "dark" and "lit" (the displays alone); or milliseconds to pass. After each event one
// word: a mark per settled set, "C" for a change and "U" for none, with the state seen by its
// subscribers; then the state, "S" settling with the tiles veiled, "s" settling unveiled, "t"
// veiled only, "-" neither, and the number of timers pending.
void play(const QString& events, QStringList& trace) {
    ManualScheduler scheduler;
    FixedDisplays displays{screensOf(laptop)};
    ScreenTopologyWatcher watcher{displays, scheduler};
    const auto state = [&] {
        return QString::fromLatin1(watcher.isSettling() ? (watcher.isTransitioning() ? "S" : "s")
                                                        : (watcher.isTransitioning() ? "t" : "-"));
    };
    QString word;
    QObject::connect(&watcher, &ScreenTopologyWatcher::settled, [&](const auto& change) {
        word += (change.topologyChanged ? QLatin1Char('C') : QLatin1Char('U')) + state();
        QCOMPARE(change.displays, LayoutDisplay::currentDisplays(displays));
    });
    bool veiled = false;
    QObject::connect(&watcher, &ScreenTopologyWatcher::isTransitioningChanged, [&](bool now) {
        QCOMPARE(now, !veiled);
        veiled = now;
    });
    for (const QString& event : events.split(QLatin1Char(' '))) {
        word.clear();
        if (event == QLatin1String("start")) {
            watcher.start();
        } else if (event == QLatin1String("both") || event == QLatin1String("laptop") ||
                   event == QLatin1String("none") || event.startsWith(QLatin1Char('='))) {
            displays.setScreens(screensOf(event == QLatin1String("both")     ? both
                                          : event == QLatin1String("laptop") ? laptop
                                          : event == QLatin1String("none")   ? QString()
                                                                             : event.mid(1)));
        } else if (event == QLatin1String("quietly-both")) {
            const QSignalBlocker quiet(&displays);
            displays.setScreens(screensOf(both));
        } else if (event == QLatin1String("sleep")) {
            Q_EMIT displays.willSleep();
        } else if (event == QLatin1String("wake")) {
            Q_EMIT displays.didWake();
        } else if (event == QLatin1String("dark")) {
            Q_EMIT displays.screensDidSleep();
        } else if (event == QLatin1String("lit")) {
            Q_EMIT displays.screensDidWake();
        } else {
            scheduler.advance(std::chrono::milliseconds(event.toInt()));
        }
        for (const auto& pending : scheduler.pending()) {
            QCOMPARE(pending.tolerance, ScreenTopologyWatcher::settleTolerance);
            QVERIFY(!pending.repeating);
        }
        trace << word + state() + QString::number(scheduler.pendingCount());
    }
}

} // namespace

class TestScreenTopologyWatcher : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void settles_data() {
        QTest::addColumn<QString>("events");
        QTest::addColumn<QString>("trace");
        // Subscribers re-arrange while the desktop is still veiled, and what they save is kept.
        row("2 s of quiet, restarted by each notification", "start both 1900 both 1999 1 60000",
            "-0 S1 S1 S1 S1 Ct-0 -0");
        row("a sleep that changed nothing settles quietly", "start sleep wake 2000",
            "-0 s0 s1 U--0");
        row("unplugged and replugged within one period: veiled to the end",
            "start both 1000 laptop 2000", "-0 S1 S1 S1 Ut-0");
        row("the baseline follows each settled set", "start both 2000 both 2000 laptop 2000",
            "-0 S1 Ct-0 s1 U--0 S1 Ct-0");
        row("a set that becomes usable in time settles", "start none 20000 quietly-both 2000",
            "-0 S1 S1 S1 Ct-0");
        row("the machine sleeps: no cycle until it wakes",
            "start both 1000 sleep laptop 60000 both wake 2000", "-0 S1 S1 s0 s1 s0 S1 S1 Ct-0");
        // A monitor that drops off in the dark is not an unplug.
        row("the displays go dark: the same", "start both 1000 dark laptop 60000 both lit 2000",
            "-0 S1 S1 s0 s1 s0 S1 S1 Ct-0");
        row("a second start registers nothing", "start start both 2000", "-0 -0 S1 Ct-0");
        row("nothing happens before start", "both 2000", "-0 -0");
    }
    void settles() {
        QFETCH(QString, events);
        QFETCH(QString, trace);
        for (const QChar mark : trace) {
            if (mark == QLatin1Char('C') || mark == QLatin1Char('U')) {
                const auto changed = QLatin1String(mark == QLatin1Char('C') ? "true" : "false");
                QTest::ignoreMessage(
                    QtInfoMsg,
                    QRegularExpression(
                        QStringLiteral("^Displays settled: [12] screen\\(s\\), changed=%1$")
                            .arg(changed)));
            }
        }
        QStringList played;
        play(events, played);
        QCOMPARE(played.join(QLatin1Char(' ')), trace);
    }

    // Twelve evaluations, then the cycle gives up; the baseline stays, so the next notification
    // starts a fresh cycle against it.
    void unusableSetGivesUp_data() {
        QTest::addColumn<QString>("screens");
        row("no displays", "none");
        row("visible height 0.5", "=a@0,0,1920x1080^0.5");
    }
    void unusableSetGivesUp() {
        QFETCH(QString, screens);
        QTest::ignoreMessage(QtCriticalMsg,
                             "Display topology never became usable — giving up on this change");
        QTest::ignoreMessage(QtInfoMsg, "Displays settled: 1 screen(s), changed=false");
        QStringList played;
        play(QStringLiteral("start %1 22000 2000 laptop 2000").arg(screens), played);
        QCOMPARE(played.join(QLatin1Char(' ')), QStringLiteral("-0 S1 S1 -0 s1 U--0"));
    }

    void looksLikeAChange_data() {
        QTest::addColumn<QString>("displays");
        QTest::addColumn<bool>("withBaseline");
        QTest::addColumn<bool>("expected");
        row("same set", laptop, true, false);
        row("other set", both, true, true);
        row("no baseline", laptop, false, true);
        row("unusable", "laptop@0,0,1x982*", true, true);
        row("visible frame only", "laptop@0,0,1512x982*^500", true, false);
    }
    void looksLikeAChange() {
        QFETCH(QString, displays);
        QFETCH(bool, withBaseline);
        const std::optional<QString> since =
            withBaseline
                ? std::optional(LayoutProfileResolver::topologySignature(displaysOf(laptop)))
                : std::nullopt;
        QTEST(ScreenTopologyWatcher::looksLikeAChange(displaysOf(displays), since), "expected");
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestScreenTopologyWatcher)
#include "tst_screentopologywatcher.moc"
