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
        QTest::addColumn<bool>("canUndo");
        QTest::addColumn<bool>("canRedo");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("nothing parked: starts with Open") << 0 << false << false << kBase;
        QTest::newRow("one parked, undo")
            << 1 << true << false
            << QStringList{QStringLiteral("1 widget is parked here until its display is back")} +
                   kBase;
        QTest::newRow("three parked, undo and redo")
            << 3 << true << true
            << QStringList{QStringLiteral(
                   "3 widgets are parked here until their display is back")} +
                   kBase;
    }
    void menuInItsOrder() {
        QFETCH(int, visitors);
        QFETCH(bool, canUndo);
        QFETCH(bool, canRedo);
        QFETCH(QStringList, expected);
        QMenu menu;
        StatusBarController::buildMenu(menu, {visitors, canUndo, canRedo}, {});
        QCOMPARE(titles(menu), expected);
        QCOMPARE(menu.actions().first()->isEnabled(), visitors == 0);
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
        for (const QString& title : kBase) {
            if (title != QStringLiteral("—")) {
                find(menu, title)->trigger();
            }
        }
        QCOMPARE(calls, (QStringList{QStringLiteral("open"), QStringLiteral("toggle"),
                                     QStringLiteral("undo"), QStringLiteral("redo"),
                                     QStringLiteral("quit")}));
    }
};

QTEST_MAIN(tst_StatusBarController)
#include "tst_statusbarcontroller.moc"
