#include "launch/AppsBehaviour.h"
#include "platform/null/NullNotifications.h"
#include "platform/null/NullWorkspace.h"
#include "platform/null/PlainAppDirectory.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;

namespace {

BehaviourTile tile(const QUuid& id, const QString& apps) {
    WidgetInstance instance;
    instance.id = id;
    instance.kind = QStringLiteral("apps");
    if (!apps.isNull()) {
        instance.settings = WidgetSettings{{QStringLiteral("apps"), apps}};
    }
    return {instance, true};
}

QStringList names(const QList<AppTileEntry>& entries) {
    QStringList out;
    for (const AppTileEntry& entry : entries) {
        out << entry.name + (entry.installed ? QString() : QStringLiteral("?")) +
                   (entry.iconFile.isEmpty() ? QString() : QStringLiteral("*"));
    }
    return out;
}

} // namespace

class TestAppsBehaviour : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        m_directory = std::make_unique<PlainAppDirectory>();
        m_directory->install({QStringLiteral("org.example.Files"),
                              QStringLiteral("Files"),
                              QStringLiteral("system-file-manager"),
                              {}},
                             QStringLiteral("/icons/files.png"));
        m_directory->install({QStringLiteral("term"), QStringLiteral("Terminal"), QString(), {}});
        m_directory->install({QStringLiteral("editor"), QStringLiteral("Editor"), QString(), {}});
        m_workspace = std::make_unique<NullWorkspace>();
        m_workspace->addApplication(QStringLiteral("editor"), QStringLiteral("Editor"),
                                    QStringLiteral("/apps/editor.desktop"));
        m_workspace->addRoleApplication(AppRole::fileManager,
                                        QStringLiteral("/apps/org.example.Files.desktop"));
        m_workspace->addRoleApplication(AppRole::terminal, QStringLiteral("/apps/term.desktop"));
        // A role whose application is not among those menus show stays out.
        m_workspace->addRoleApplication(AppRole::calendar, QStringLiteral("/apps/hidden.desktop"));
    }

    void showsTheChoiceElseTheDesktopsOwn() {
        AppsBehaviour apps(*m_workspace, m_notifications, *m_directory);
        const QUuid a = QUuid::createUuid();
        const QUuid b = QUuid::createUuid();
        QSignalSpy changed(&apps, &TileBehaviour::changed);
        apps.setTiles({tile(a, QString()), tile(b, QStringLiteral("editor;gone.app"))});
        QCOMPARE(names(apps.entries(a)),
                 (QStringList{QStringLiteral("Files*"), QStringLiteral("Terminal")}));
        QCOMPARE(names(apps.entries(b)),
                 (QStringList{QStringLiteral("Editor"), QStringLiteral("gone.app?")}));
        QCOMPARE(changed.count(), 2);
        // Unchanged settings are not looked up or drawn again.
        apps.setTiles({tile(a, QString()), tile(b, QStringLiteral("editor;gone.app"))});
        QCOMPARE(changed.count(), 2);
        apps.setTiles({tile(b, QStringLiteral("editor"))});
        QVERIFY(apps.entries(a).isEmpty());
        QCOMPARE(changed.count(), 3);
    }

    void aClickStartsTheApp() {
        AppsBehaviour apps(*m_workspace, m_notifications, *m_directory);
        const BehaviourTile shown = tile(QUuid::createUuid(), QStringLiteral("editor;gone.app"));
        apps.setTiles({shown});
        QVERIFY(!apps.press(shown.instance, QString()));
        QVERIFY(apps.press(shown.instance, AppsBehaviour::commandFor(QStringLiteral("editor"))));
        QCOMPARE(m_workspace->requests(),
                 QStringList{QStringLiteral("application /apps/editor.desktop")});
        QVERIFY(m_notifications.shown().isEmpty());
        QVERIFY(apps.press(shown.instance, AppsBehaviour::commandFor(QStringLiteral("gone.app"))));
        QCOMPARE(m_notifications.shown().size(), 1);
        QVERIFY(
            m_notifications.shown().first().body.contains(QStringLiteral("no longer installed")));
    }

private:
    std::unique_ptr<PlainAppDirectory> m_directory;
    std::unique_ptr<NullWorkspace> m_workspace;
    NullNotifications m_notifications;
};

QTEST_GUILESS_MAIN(TestAppsBehaviour)
#include "tst_appsbehaviour.moc"
