#include "TestRows.h"
#include "launch/Shortcut.h"
#include "platform/null/NullWorkspace.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using tw::test::row;

class TestShortcut : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QVERIFY(m_home.isValid()); }

    // "%h" in a target or a request is the home folder of the test.
    void open_data() {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("request"); // what the workspace was asked; empty: nothing
        QTest::addColumn<bool>("opened");
        row("an installed app", "app", "org.example.Editor", "Editor",
            "application /apps/editor.desktop", true);
        row("an app no longer installed", "app", "org.example.Gone", "org.example.Gone",
            "by-name org.example.Gone", true);
        row("an address without its scheme", "url", "www.example.org/news", "example.org",
            "open https://www.example.org/news", true);
        row("a mail link", "url", "mailto:ada@example.org", "mailto:ada@example.org",
            "open mailto:ada@example.org", true);
        row("a file in the home folder", "file", "~/notes.txt", "notes.txt",
            "open file://%h/notes.txt", true);
        row("a file that is gone", "file", "~/missing.txt", "missing.txt", "", false);
        row("a command, never a shell", "command", "touch ran 'with space'", "touch", "", true);
        row("a command that needs a shell", "command", "ls > out", "ls > out", "", false);
        row("a program that is not there", "command", "no-such-program-of-tarnwick",
            "no-such-program-of-tarnwick", "", false);
        row("nothing chosen", "url", "", "", "", false);
    }
    void open() {
        QFETCH(QString, type);
        QFETCH(QString, target);
        QFETCH(QString, title);
        QFETCH(QString, request);
        QFETCH(bool, opened);
        QFile notes(m_home.filePath(QStringLiteral("notes.txt")));
        QVERIFY(notes.open(QIODevice::WriteOnly));
        NullWorkspace workspace;
        workspace.addApplication(QStringLiteral("org.example.Editor"), QStringLiteral("Editor"),
                                 QStringLiteral("/apps/editor.desktop"));
        const Shortcut shortcut = Shortcut::fromSettings(
            {{QStringLiteral("type"), type},
             {type, target},
             // Another type's target is not read.
             {QStringLiteral("url"),
              type == QLatin1String("url") ? target : QStringLiteral("x.org")}});
        QCOMPARE(shortcut.title(workspace.applicationForIdentifier(target)
                                    ? QStringLiteral("Editor")
                                    : QString()),
                 title);
        QCOMPARE(shortcut.open(workspace, m_home.path()).isSuccess(), opened);
        QCOMPARE(workspace.requests().join(QLatin1Char('|')),
                 QString(request).replace(QStringLiteral("%h"), m_home.path()));
        if (type == QLatin1String("command") && opened) {
            QTRY_VERIFY(QFile::exists(m_home.filePath(QStringLiteral("with space"))));
            QVERIFY(QFile::exists(m_home.filePath(QStringLiteral("ran"))));
        }
    }

    void theNameWins() {
        const Shortcut shortcut = Shortcut::fromSettings(
            {{QStringLiteral("type"), QStringLiteral("command")},
             {QStringLiteral("command"), QStringLiteral("/usr/bin/htop -d 5")},
             {QStringLiteral("name"), QStringLiteral(" Processes ")}});
        QCOMPARE(shortcut.title(QString()), QStringLiteral("Processes"));
        QCOMPARE(Shortcut::fromSettings({{QStringLiteral("command"), QStringLiteral("x")}}).type,
                 Shortcut::Type::app);
    }

private:
    QTemporaryDir m_home;
};

QTEST_GUILESS_MAIN(TestShortcut)
#include "tst_shortcut.moc"
