#include "SmartLayoutRig.h"
#include "TestRows.h"

#include <QSignalSpy>
#include <QTest>

namespace tw {

using namespace test;
using Coordinator = SmartLayoutCoordinator;
using Rig = SmartLayoutRig;

class TestSmartLayoutCoordinator : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Steps, ";"-separated: "wait <seconds>", "app <id>", "own app", "plug", "unplug",
    // "manual <profile>", "resume", and "=<profile>" for what is active and on the desktop, or
    // "status <idle|applied|paused>".
    void script_data() {
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("rules");
        QTest::addColumn<QString>("steps");
        row("a window across midnight starts and ends", "21:59:40", "schedule 1320..420 Night",
            "=Default; status idle; wait 30; =Night; status applied; wait 32370; =Night; "
            "wait 30; =Default; status idle");
        row("first holding rule wins", "12:00:00", "schedule 0..0 Work; schedule 0..0 Night",
            "=Work");
        row("a switch by hand pauses the rules", "10:00:00", "schedule 0..0 Night",
            "=Night; manual Work; =Work; status paused; wait 870; =Work; wait 60; =Night");
        row("resuming ends the pause at once", "10:00:00", "schedule 0..0 Night",
            "manual Work; =Work; resume; =Night");
        row("application rules skip this program", "12:00:00", "application org.Editor Night",
            "=Default; app ORG.EDITOR; =Night; own app; wait 30; =Night; app org.Mail; =Default");
        row("a display rule follows the displays", "12:00:00", "display projector Night",
            "=Default; plug; wait 1; =Default; wait 1; =Night; unplug; wait 2; =Default");
    }
    void script() {
        QFETCH(QString, start);
        QFETCH(QString, rules);
        QFETCH(QString, steps);
        Rig rig(QTime::fromString(start, QStringLiteral("HH:mm:ss")));
        for (const QString& rule : rules.split(QStringLiteral("; "))) {
            rig.addRule(rule);
        }
        rig.coordinator->start();
        for (const QString& step : steps.split(QStringLiteral("; "))) {
            const QString argument = step.section(QLatin1Char(' '), 1);
            if (step.startsWith(QLatin1Char('='))) {
                QVERIFY2(rig.shown() == step.mid(1),
                         qPrintable(step + QStringLiteral(": ") + rig.shown()));
            } else if (step.startsWith(QLatin1String("status"))) {
                const QHash<QString, Coordinator::Status::Kind> kinds{
                    {QStringLiteral("idle"), Coordinator::Status::Kind::idle},
                    {QStringLiteral("applied"), Coordinator::Status::Kind::applied},
                    {QStringLiteral("paused"), Coordinator::Status::Kind::manualPause}};
                QVERIFY2(rig.coordinator->status().kind == kinds.value(argument), qPrintable(step));
            } else if (step.startsWith(QLatin1String("wait"))) {
                rig.fixture.scheduler.advance(std::chrono::seconds(argument.toInt()));
            } else if (step == QLatin1String("own app")) {
                rig.foreground.activate({QStringLiteral("tarnwick"), {}, true});
            } else if (step.startsWith(QLatin1String("app"))) {
                rig.foreground.activate({argument, argument, false});
            } else if (step == QLatin1String("plug")) {
                rig.fixture.displays.setScreens({mainScreen, projector});
            } else if (step == QLatin1String("unplug")) {
                rig.fixture.displays.setScreens({mainScreen});
            } else if (step.startsWith(QLatin1String("manual"))) {
                rig.coordinator->activateProfile(rig.idOf(argument), Coordinator::Switch::manual);
            } else if (step == QLatin1String("resume")) {
                rig.coordinator->resumeAutomation();
            } else {
                QFAIL(qPrintable(QStringLiteral("unknown step ") + step));
            }
        }
    }

    // Edits made under a rule stay in the rule's profile; the profile before the rule returns
    // as it was; a rule that stays true activates nothing again.
    void editsStayWithTheRulesProfile() {
        Rig rig(QTime(21, 59, 40));
        rig.addRule(QStringLiteral("schedule 1320..420 Night"));
        rig.coordinator->start();
        rig.fixture.scheduler.advance(std::chrono::seconds(30));
        QCOMPARE(rig.shown(), QStringLiteral("Night"));
        QVERIFY(
            rig.grid->addFree(QStringLiteral("weather"), WidgetSize::wide, {}, QPointF(600, 600)));
        QSignalSpy replaced(rig.grid.get(), &GridStore::layoutChanged);
        rig.fixture.scheduler.advance(std::chrono::minutes(10));
        QCOMPARE(replaced.size(), 0);
        rig.fixture.clock.setNow(QDateTime(QDate(2026, 5, 2), QTime(7, 0)));
        rig.fixture.scheduler.advance(std::chrono::seconds(30));
        QCOMPARE(rig.shown(), QStringLiteral("Default"));
        const auto night = rig.profiles->layoutFor(rig.idOf(QStringLiteral("Night")), std::nullopt);
        QCOMPARE(night->instances.size(), 2);
    }

    // A deleted profile takes its rules along; undoing puts both back in their places.
    void deleteAndUndo() {
        Rig rig(QTime(12, 0));
        rig.addRule(QStringLiteral("application org.Editor Work"));
        rig.addRule(QStringLiteral("schedule 0..0 Night"));
        rig.addRule(QStringLiteral("application org.Mail Work"));
        rig.coordinator->start();
        QCOMPARE(rig.shown(), QStringLiteral("Night"));
        const QList<SmartLayoutRule> before = rig.rules->rules();
        const auto deleted = rig.coordinator->deleteProfile(rig.idOf(QStringLiteral("Work")));
        QVERIFY(deleted);
        QCOMPARE(rig.rules->rules().size(), 1);
        QVERIFY(!rig.coordinator->deleteProfile(LayoutProfile::defaultID()));
        rig.coordinator->restoreDeleted(*deleted);
        QCOMPARE(rig.rules->rules(), before);
        QCOMPARE(rig.profiles->profiles().at(2).name, QStringLiteral("Work"));
        // Deleting the active profile puts the default's layout on the desktop.
        rig.coordinator->deleteProfile(rig.idOf(QStringLiteral("Night")));
        QCOMPARE(rig.shown(), QStringLiteral("Default"));
    }

    // On a new display set a profile other than the default is re-mapped from its anchors.
    void activeProfileFollowsTheDisplays() {
        Rig rig(QTime(12, 0));
        rig.coordinator->start();
        rig.coordinator->activateProfile(rig.idOf(QStringLiteral("Work")),
                                         Coordinator::Switch::manual);
        rig.fixture.displays.setScreens(
            {{QStringLiteral("main"), QStringLiteral("Main"), QRectF(0, 0, 2880, 1800),
              QRectF(0, 0, 2880, 1775), true}});
        rig.fixture.scheduler.advance(ScreenTopologyWatcher::settleDelay);
        const WidgetInstance tile = rig.grid->layout().instances.value(0);
        QCOMPARE(tile.kind, QStringLiteral("calendar"));
        // Left edge kept, distance from the top kept.
        QCOMPARE(QPointF(*tile.posX, *tile.posY), QPointF(300, 1775 - (875 - 600)));
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestSmartLayoutCoordinator)
#include "tst_smartlayoutcoordinator.moc"
