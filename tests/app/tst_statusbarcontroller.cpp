#include "app/StatusBarController.h"

#include <QMenu>
#include <QTest>

using namespace tw;

namespace {

QStringList titles(const QMenu& menu) {
    QStringList result;
    for (const QAction* action : menu.actions()) {
        result.append(action->isSeparator() ? QStringLiteral("—") : action->text());
    }
    return result;
}

QAction* find(const QMenu& menu, const QString& text) {
    for (QAction* action : menu.actions()) {
        if (action->text() == text) {
            return action;
        }
    }
    return nullptr;
}

const QStringList kBase{QStringLiteral("Open Tarnwick…"),
                        QStringLiteral("Show / Hide on Desktop"),
                        QStringLiteral("Undo Layout Change"),
                        QStringLiteral("Redo Layout Change"),
                        QStringLiteral("—"),
                        QStringLiteral("Quit Tarnwick")};

} // namespace

class tst_StatusBarController : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void menuInItsOrder_data() {
        QTest::addColumn<int>("visitors");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("nothing parked: starts with Open") << 0 << kBase;
        QTest::newRow("one parked")
            << 1
            << QStringList{QStringLiteral("1 widget is parked here until its display is back")} +
                   kBase;
        QTest::newRow("three parked")
            << 3
            << QStringList{QStringLiteral(
                   "3 widgets are parked here until their display is back")} +
                   kBase;
    }
    void menuInItsOrder() {
        QFETCH(int, visitors);
        QFETCH(QStringList, expected);
        QMenu menu;
        StatusBarController::buildMenu(menu, {visitors, false, false}, {});
        QCOMPARE(titles(menu), expected);
        if (visitors > 0) {
            QVERIFY(!menu.actions().first()->isEnabled());
        }
    }

    void undoAndRedoFollowTheHistory_data() {
        QTest::addColumn<bool>("canUndo");
        QTest::addColumn<bool>("canRedo");
        QTest::newRow("neither") << false << false;
        QTest::newRow("undo") << true << false;
        QTest::newRow("both") << true << true;
    }
    void undoAndRedoFollowTheHistory() {
        QFETCH(bool, canUndo);
        QFETCH(bool, canRedo);
        QMenu menu;
        StatusBarController::buildMenu(menu, {0, canUndo, canRedo}, {});
        QCOMPARE(find(menu, QStringLiteral("Undo Layout Change"))->isEnabled(), canUndo);
        QCOMPARE(find(menu, QStringLiteral("Redo Layout Change"))->isEnabled(), canRedo);
    }

    void rebuildingReplacesTheEntriesAndActionsRun() {
        QMenu menu;
        QStringList calls;
        StatusBarController::MenuActions actions{
            .openSettings = [&] { calls.append(QStringLiteral("open")); },
            .toggleBoard = [&] { calls.append(QStringLiteral("toggle")); },
            .undo = [&] { calls.append(QStringLiteral("undo")); },
            .redo = [&] { calls.append(QStringLiteral("redo")); },
            .quit = [&] { calls.append(QStringLiteral("quit")); },
        };
        StatusBarController::buildMenu(menu, {2, true, true}, actions);
        StatusBarController::buildMenu(menu, {0, true, true}, actions);
        QCOMPARE(titles(menu), kBase);
        for (const QString& title :
             {QStringLiteral("Open Tarnwick…"), QStringLiteral("Show / Hide on Desktop"),
              QStringLiteral("Undo Layout Change"), QStringLiteral("Redo Layout Change"),
              QStringLiteral("Quit Tarnwick")}) {
            find(menu, title)->trigger();
        }
        QCOMPARE(calls, (QStringList{QStringLiteral("open"), QStringLiteral("toggle"),
                                     QStringLiteral("undo"), QStringLiteral("redo"),
                                     QStringLiteral("quit")}));
    }
};

QTEST_MAIN(tst_StatusBarController)
#include "tst_statusbarcontroller.moc"
