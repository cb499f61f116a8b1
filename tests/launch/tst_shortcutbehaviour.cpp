#include "launch/ShortcutBehaviour.h"
#include "platform/null/NullNotifications.h"
#include "platform/null/NullWorkspace.h"
#include "platform/null/PlainAppDirectory.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;

namespace {

BehaviourTile tile(const QUuid& id, const WidgetSettings& settings) {
    WidgetInstance instance;
    instance.id = id;
    instance.kind = QStringLiteral("shortcut");
    instance.settings = settings;
    return {instance, true};
}

} // namespace

class TestShortcutBehaviour : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // What each tile shows, and that a file gone since is told on the tile and when clicked.
    void looksAndClicks() {
        QTemporaryDir home;
        QFile notes(home.filePath(QStringLiteral("notes.txt")));
        QVERIFY(notes.open(QIODevice::WriteOnly));
        notes.close();
        PlainAppDirectory directory;
        directory.install({QStringLiteral("org.example.Editor"),
                           QStringLiteral("Editor"),
                           QStringLiteral("editor"),
                           {}},
                          QStringLiteral("/icons/editor.png"));
        directory.install(
            {QStringLiteral("text"), QStringLiteral("Text"), QStringLiteral("text-plain"), {}},
            QStringLiteral("/icons/text.png"));
        NullWorkspace workspace;
        NullNotifications notifications;
        ShortcutBehaviour shortcuts(workspace, notifications, directory, home.path());
        const QUuid app = QUuid::createUuid();
        const QUuid file = QUuid::createUuid();
        const QUuid gone = QUuid::createUuid();
        shortcuts.setTiles(
            {tile(app, {{QStringLiteral("app"), QStringLiteral("org.example.Editor")}}),
             tile(file, {{QStringLiteral("type"), QStringLiteral("file")},
                         {QStringLiteral("file"), QStringLiteral("~/notes.txt")}}),
             tile(gone, {{QStringLiteral("type"), QStringLiteral("app")},
                         {QStringLiteral("app"), QStringLiteral("org.example.Gone")}})});
        QCOMPARE(shortcuts.look(app)->title, QStringLiteral("Editor"));
        QCOMPARE(shortcuts.look(app)->iconFile, QStringLiteral("/icons/editor.png"));
        QCOMPARE(shortcuts.look(file)->title, QStringLiteral("notes.txt"));
        QCOMPARE(shortcuts.look(file)->iconFile, QStringLiteral("/icons/text.png"));
        QVERIFY(shortcuts.look(file)->problem.isEmpty());
        QVERIFY(!shortcuts.look(gone)->problem.isEmpty());

        QSignalSpy changed(&shortcuts, &TileBehaviour::changed);
        QVERIFY(notes.remove());
        QVERIFY(shortcuts.press(tile(file, {}).instance, QString()));
        QVERIFY(!shortcuts.look(file)->problem.isEmpty());
        QCOMPARE(changed.count(), 1);
        QCOMPARE(notifications.shown().size(), 1);
        QVERIFY(workspace.requests().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestShortcutBehaviour)
#include "tst_shortcutbehaviour.moc"
