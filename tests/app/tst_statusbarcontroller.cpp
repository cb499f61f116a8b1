#include "app/StatusBarController.h"

#include <QMenu>
#include <QTest>

using namespace tw;

namespace {

const QStringList kBase{
    QStringLiteral("Open Tarnwick…"),     QStringLiteral("Show / Hide on Desktop"),
    QStringLiteral("Undo Layout Change"), QStringLiteral("Redo Layout Change"),
    QStringLiteral("Check for Updates…"), QStringLiteral("—"),
    QStringLiteral("Quit Tarnwick")};

} // namespace

class tst_StatusBarController : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Built over an earlier menu, which it replaces; every entry it enables runs its action.
    void menuInItsOrder_data() {
        QTest::addColumn<int>("visitors");
        QTest::addColumn<bool>("canUndo");
        QTest::addColumn<bool>("canRedo");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<QString>("calls");
        QTest::addColumn<QString>("available");
        QTest::newRow("nothing parked: starts with Open")
            << 0 << false << false << kBase << "open toggle updates quit" << QString();
        QTest::newRow("one parked, undo")
            << 1 << true << false
            << QStringList{QStringLiteral("1 widget is parked here until its display is back")} +
                   kBase
            << "open toggle undo updates quit" << QString();
        QTest::newRow("three parked, undo and redo")
            << 3 << true << true
            << QStringList{QStringLiteral(
                   "3 widgets are parked here until their display is back")} +
                   kBase
            << "open toggle undo redo updates quit" << QString();
        QStringList updated = kBase;
        updated[4] = QStringLiteral("Update available: 0.3.0…");
        QTest::newRow("a newer version found")
            << 0 << false << false << updated << "open toggle updates quit"
            << QStringLiteral("0.3.0");
    }
    void menuInItsOrder() {
        QFETCH(int, visitors);
        QFETCH(bool, canUndo);
        QFETCH(bool, canRedo);
        QStringList calls;
        const auto record = [&calls](const char* name) {
            return [&calls, name] { calls.append(QLatin1String(name)); };
        };
        const StatusBarController::MenuActions actions{.openSettings = record("open"),
                                                       .toggleBoard = record("toggle"),
                                                       .undo = record("undo"),
                                                       .redo = record("redo"),
                                                       .checkForUpdates = record("updates"),
                                                       .quit = record("quit")};
        QMenu menu;
        QFETCH(QString, available);
        StatusBarController::buildMenu(menu,
                                       {.visitorCount = 2,
                                        .canUndo = true,
                                        .canRedo = true,
                                        .notices = {},
                                        .availableVersion = QStringLiteral("9.0.0")},
                                       actions);
        StatusBarController::buildMenu(menu,
                                       {.visitorCount = visitors,
                                        .canUndo = canUndo,
                                        .canRedo = canRedo,
                                        .notices = {},
                                        .availableVersion = available},
                                       actions);
        QStringList titles;
        for (QAction* action : menu.actions()) {
            titles.append(action->isSeparator() ? QStringLiteral("—") : action->text());
            if (action->isEnabled()) {
                action->trigger();
            }
        }
        QTEST(titles, "expected");
        QCOMPARE(menu.actions().first()->isEnabled(), visitors == 0);
        QTEST(calls.join(QLatin1Char(' ')), "calls");
    }

    // Notices lead the menu, a separator after them; a click names the notice.
    void noticesLeadTheMenu() {
        QStringList clicked;
        StatusBarController::MenuActions actions{};
        actions.noticeClicked = [&clicked](const QString& id) { clicked.append(id); };
        StatusBarController::MenuState state{};
        state.notices = {{QStringLiteral("a"), QStringLiteral("News"), QIcon()},
                         {QStringLiteral("b"), QStringLiteral("Tip"), QIcon()}};
        QMenu menu;
        StatusBarController::buildMenu(menu, state, actions);
        QStringList titles;
        for (QAction* action : menu.actions()) {
            titles.append(action->isSeparator() ? QStringLiteral("—") : action->text());
        }
        QCOMPARE(titles,
                 QStringList({QStringLiteral("News"), QStringLiteral("Tip"), QStringLiteral("—")}) +
                     kBase);
        menu.actions().at(1)->trigger();
        QCOMPARE(clicked, QStringList{QStringLiteral("b")});
    }
};

QTEST_MAIN(tst_StatusBarController)
#include "tst_statusbarcontroller.moc"
