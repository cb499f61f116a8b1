#include "ManualScheduler.h"
#include "launch/ToolboxBehaviour.h"
#include "platform/null/FixedSystemActions.h"
#include "platform/null/NullNotifications.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace std::chrono_literals;
using tw::test::ManualScheduler;

class TestToolboxBehaviour : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void offersWhatTheDesktopCanDo() {
        FixedSystemActions actions({SystemAction::doNotDisturb, SystemAction::lockScreen});
        ManualScheduler scheduler;
        NullNotifications notifications;
        ToolboxBehaviour toolbox(actions, scheduler, notifications);
        QCOMPARE(toolbox.offered(),
                 (QList<SystemAction>{SystemAction::lockScreen, SystemAction::doNotDisturb}));
        QSignalSpy changed(&toolbox, &TileBehaviour::changed);
        actions.setOffered({SystemAction::screenshot});
        QCOMPARE(changed.count(), 1);
        QCOMPARE(toolbox.offered(), QList<SystemAction>{SystemAction::screenshot});
        // What is not offered is no button: the click is not taken.
        QVERIFY(!toolbox.press({}, ToolboxBehaviour::commandOf(SystemAction::lockScreen)));
        QVERIFY(!toolbox.press({}, QStringLiteral("reboot")));
        QVERIFY(actions.runs().isEmpty());
    }

    void runsOnClickTheDisplaysAfterAMoment() {
        FixedSystemActions actions({SystemAction::lockScreen, SystemAction::displayOff,
                                    SystemAction::screenshot, SystemAction::doNotDisturb});
        ManualScheduler scheduler;
        NullNotifications notifications;
        ToolboxBehaviour toolbox(actions, scheduler, notifications);
        for (const SystemAction action : ToolboxBehaviour::all()) {
            QCOMPARE(ToolboxBehaviour::actionOf(ToolboxBehaviour::commandOf(action)), action);
            QVERIFY(toolbox.press({}, ToolboxBehaviour::commandOf(action)));
        }
        QCOMPARE(actions.runs(),
                 (QList<SystemAction>{SystemAction::lockScreen, SystemAction::screenshot,
                                      SystemAction::doNotDisturb}));
        QVERIFY(toolbox.doNotDisturb());
        scheduler.advance(ToolboxBehaviour::displayOffDelay);
        QCOMPARE(actions.runs().last(), SystemAction::displayOff);
        QVERIFY(notifications.shown().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestToolboxBehaviour)
#include "tst_toolboxbehaviour.moc"
