#include "Files.h"
#include "TestRows.h"
#include "model/WidgetAction.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/ShellRelauncher.h"
#include "platform/null/NullNotifications.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using tw::LinuxWorkspace;
using tw::WidgetAction;
using tw::test::row;
using tw::test::writeFile;

namespace {

// A program that writes its arguments, one a line, to $TW_RECORD_DIR/<its name>.
void writeRecorder(const QString& path) {
    QVERIFY(writeFile(path,
                      "#!/bin/sh\n"
                      "out=\"$TW_RECORD_DIR/$(basename \"$0\")\"\n"
                      "printf '%s\\n' \"$@\" > \"$out.part\" && mv \"$out.part\" \"$out\"\n"));
    QVERIFY(QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner));
}

} // namespace

// Runs the real implementation against stand-ins for xdg-open and applications, found through
// PATH and the XDG data directories of a temporary home; and the shell that starts the program
// again once it has gone.
class TestLinuxWorkspace : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        QVERIFY(m_root.isValid());
        m_bin = m_root.filePath(QStringLiteral("bin"));
        m_records = m_root.filePath(QStringLiteral("records"));
        m_applications = m_root.filePath(QStringLiteral("data/applications"));
        QVERIFY(QDir().mkpath(m_bin) && QDir().mkpath(m_records) && QDir().mkpath(m_applications));
        writeRecorder(m_bin + QLatin1String("/xdg-open"));
        writeRecorder(m_bin + QLatin1String("/fake-editor"));
        QVERIFY(writeFile(m_applications + QLatin1String("/org.example.Editor.desktop"),
                          "[Desktop Entry]\nType=Application\nName=Fake Editor\nExec=" +
                              QFile::encodeName(m_bin) + "/fake-editor --new %U\n"));
        QVERIFY(writeFile(m_applications + QLatin1String("/org.example.Gone.desktop"),
                          "[Desktop Entry]\nType=Application\nName=Gone\nHidden=true\nExec=" +
                              QFile::encodeName(m_bin) + "/fake-editor\n"));
        m_savedPath = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(m_bin) + ":/usr/bin:/bin");
        qputenv("TW_RECORD_DIR", QFile::encodeName(m_records));
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_root.filePath(QStringLiteral("data"))));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(m_root.filePath(QStringLiteral("share"))));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_root.filePath(QStringLiteral("config"))));
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(m_root.filePath(QStringLiteral("etc"))));
        qputenv("XDG_CURRENT_DESKTOP", "Test:GNOME");
    }
    void cleanup() {
        qputenv("PATH", m_savedPath);
        for (const char* name : {"TW_RECORD_DIR", "XDG_DATA_HOME", "XDG_DATA_DIRS",
                                 "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "XDG_CURRENT_DESKTOP"}) {
            qunsetenv(name);
        }
        for (const QString& directory : {QStringLiteral("data"), QStringLiteral("share"),
                                         QStringLiteral("config"), QStringLiteral("etc")}) {
            QDir(m_root.filePath(directory)).removeRecursively();
        }
    }

    // What each opens, and with what arguments; ROOT stands for the temporary home.
    void opens_data() {
        QTest::addColumn<bool>("url");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("argument");
        row("web address", true, "example.com/a b", "xdg-open", "https://example.com/a%20b");
        row("mail link", true, "mailto:ada@example.com", "xdg-open", "mailto:ada@example.com");
        row("an existing file by its path", false, "ROOT/my notes.txt", "xdg-open",
            "ROOT/my notes.txt");
        row("by desktop-entry id", false, "org.example.Editor", "fake-editor", "--new");
        row("by name, any case", false, "fake editor", "fake-editor", "--new");
        row("by file name", false, "ORG.EXAMPLE.EDITOR", "fake-editor", "--new");
        row("a program by name", false, "Fake-Editor", "fake-editor", "");
    }
    void opens() {
        QFETCH(bool, url);
        QFETCH(QString, target);
        QFETCH(QString, program);
        QFETCH(QString, argument);
        target.replace(QLatin1String("ROOT"), m_root.path());
        QVERIFY(writeFile(m_root.filePath(QStringLiteral("my notes.txt")), "x"));
        LinuxWorkspace workspace;
        url ? WidgetAction::openURL(workspace, target) : WidgetAction::openApp(workspace, target);
        QCOMPARE(recorded(program),
                 QStringList{argument.replace(QLatin1String("ROOT"), m_root.path())});
    }

    void lookUps() {
        LinuxWorkspace workspace;
        const QString editor = m_applications + QLatin1String("/org.example.Editor.desktop");
        QCOMPARE(workspace.applicationForIdentifier(QStringLiteral("org.example.Editor")), editor);
        QCOMPARE(workspace.applicationForIdentifier(QStringLiteral("org.example.Gone")),
                 std::nullopt);
        QCOMPARE(workspace.applicationNamed(QStringLiteral("Gone")), std::nullopt);
        QCOMPARE(workspace.applicationNamed(QStringLiteral("FAKE EDITOR")), editor);
    }

    // Each file is "<path under the root>|<content>"; a desktop entry's content is the lines
    // after a runnable header.
    void applicationForRole_data() {
        QTest::addColumn<QString>("role");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* tag, const char* role,
                            std::initializer_list<const char*> files, const char* expected) {
            QStringList list;
            for (const char* file : files) {
                list.append(QString::fromUtf8(file));
            }
            QTest::newRow(tag) << QString::fromUtf8(role) << list << QString::fromUtf8(expected);
        };
        const char* a = "share/applications/a.desktop|MimeType=text/calendar;";
        const char* b = "data/applications/b.desktop|MimeType=text/calendar;";
        const char* bPath = "data/applications/b.desktop";
        const char* defaultB =
            "config/mimeapps.list|[Default Applications]\ntext/calendar=b.desktop";
        row("the person's default", "calendar", {a, b, defaultB}, bPath);
        row("the desktop's own list first", "calendar",
            {a, b, defaultB,
             "config/test-mimeapps.list|[Default Applications]\ntext/calendar=a.desktop"},
            "share/applications/a.desktop");
        row("a default not installed falls through to the next file", "calendar",
            {a, b, "config/mimeapps.list|[Default Applications]\ntext/calendar=gone.desktop;",
             "share/applications/mimeapps.list|[Default Applications]\ntext/calendar=b.desktop"},
            bPath);
        row("the system's default", "calendar",
            {a, b, "etc/gnome-mimeapps.list|[Default Applications]\ntext/calendar=b.desktop"},
            bPath);
        row("an added association before a declared type", "calendar",
            {a, "data/applications/b.desktop|",
             "config/mimeapps.list|[Added Associations]\ntext/calendar=b.desktop;"},
            bPath);
        row("a removed association is passed over", "calendar",
            {a, b, "config/mimeapps.list|[Removed Associations]\ntext/calendar=a.desktop"}, bPath);
        row("a default whose TryExec is missing", "calendar",
            {a,
             "data/applications/b.desktop|MimeType=text/calendar;\nTryExec=/nonexistent/calendar",
             defaultB},
            "share/applications/a.desktop");
        row("shown only in another desktop", "calendar",
            {"data/applications/b.desktop|MimeType=text/calendar;\nOnlyShowIn=KDE;"}, "");
        row("the person's hidden copy hides the system's entry", "calendar",
            {"share/applications/b.desktop|MimeType=text/calendar;",
             "data/applications/b.desktop|Hidden=true"},
            "");
        row("a terminal by its URL scheme", "terminal",
            {"share/applications/t.desktop|Categories=TerminalEmulator",
             "share/applications/u.desktop|",
             "config/mimeapps.list|[Default Applications]\nx-scheme-handler/terminal=u.desktop"},
            "share/applications/u.desktop");
        row("a terminal by its category", "terminal",
            {"share/applications/t.desktop|Categories=System;TerminalEmulator;"},
            "share/applications/t.desktop");
        row("a clock hidden from menus is passed over", "clock",
            {"share/applications/x.desktop|Categories=Clock;\nNoDisplay=true",
             "share/applications/y.desktop|Categories=Utility;Clock;"},
            "share/applications/y.desktop");
        row("the weather by a keyword", "weather",
            {"share/applications/w.desktop|Keywords=weather;forecast;"},
            "share/applications/w.desktop");
        row("an id from a subdirectory", "file-manager",
            {"data/applications/kde/f.desktop|",
             "config/mimeapps.list|[Default Applications]\ninode/directory=kde-f.desktop"},
            "data/applications/kde/f.desktop");
        row("nothing takes the role", "photos", {a, b}, "");
    }
    void applicationForRole() {
        QFETCH(QString, role);
        QFETCH(QStringList, files);
        QFETCH(QString, expected);
        for (const QString& file : files) {
            const QString path = m_root.filePath(file.section(QLatin1Char('|'), 0, 0));
            const QString content = file.section(QLatin1Char('|'), 1);
            if (path.endsWith(QLatin1String(".desktop"))) {
                QVERIFY(writeFile(path, "[Desktop Entry]\nType=Application\nName=x\nExec=" +
                                            QFile::encodeName(m_bin) + "/fake-editor\n" +
                                            content.toUtf8() + '\n'));
            } else {
                QVERIFY(writeFile(path, content.toUtf8()));
            }
        }
        LinuxWorkspace workspace;
        const auto found = workspace.applicationForRole(*tw::appRoleFromRawValue(role));
        QCOMPARE(found.value_or(QString()),
                 expected.isEmpty() ? QString() : m_root.filePath(expected));
    }

    void aClickStartsThePersonsOwnApplication() {
        writeRecorder(m_bin + QLatin1String("/fake-calendar"));
        writeFile(m_root.filePath(QStringLiteral("share/applications/org.example.Cal.desktop")),
                  "[Desktop Entry]\nType=Application\nName=Cal\nMimeType=text/calendar;\nExec=" +
                      QFile::encodeName(m_bin) + "/fake-calendar %u\n");
        LinuxWorkspace workspace;
        tw::NullNotifications notifications;
        QVERIFY(WidgetAction::run(workspace, notifications,
                                  *WidgetAction::resolved(QStringLiteral("calendar"), {})));
        QCOMPARE(recorded(QStringLiteral("fake-calendar")), QStringList{QString()});
        QVERIFY(notifications.shown().isEmpty());
    }

    void failuresSayWhy() {
        LinuxWorkspace workspace;
        QCOMPARE(WidgetAction::openApp(workspace, QStringLiteral("Nothing Here")).error(),
                 QStringLiteral("no application named Nothing Here"));
        QVERIFY(!workspace.runShortcut(QStringLiteral("Focus")).isSuccess());
        qputenv("PATH", QFile::encodeName(m_root.filePath(QStringLiteral("empty"))));
        QCOMPARE(WidgetAction::openURL(workspace, QStringLiteral("example.com")).error(),
                 QStringLiteral("could not start xdg-open"));
    }

    // The waiting shell takes the command line as data: spaces, quotes and "$(…)" arrive as
    // written, and it runs the program at once when the process it waits for is gone.
    void relaunchPassesArgumentsUntouched() {
        QProcess finished;
        finished.start(QStringLiteral("/bin/true"));
        QVERIFY(finished.waitForFinished(5000));
        const qint64 gonePid = finished.processId() > 0 ? finished.processId() : 999999;
        QTemporaryDir dir;
        const QStringList words{QStringLiteral("a b"), QStringLiteral("$(touch pwned)"),
                                QStringLiteral("'q\""), QStringLiteral("*")};
        QProcess shell;
        shell.setWorkingDirectory(dir.path());
        shell.start(QStringLiteral("/bin/sh"), tw::ShellRelauncher::shellArguments(
                                                   gonePid, QStringLiteral("/usr/bin/printf"),
                                                   QStringList{QStringLiteral("[%s]")} + words));
        QVERIFY(shell.waitForFinished(10000));
        QCOMPARE(QString::fromUtf8(shell.readAllStandardOutput()),
                 QStringLiteral("[a b][$(touch pwned)]['q\"][*]"));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("pwned"))));
    }

    void relaunchWithoutAShellFails() {
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("could not start /nonexistent/sh")));
        tw::ShellRelauncher relauncher(QStringLiteral("/nonexistent/sh"));
        QVERIFY(!relauncher.startAfterExit(QCoreApplication::applicationPid(),
                                           QStringLiteral("/bin/true"), {}));
    }

private:
    // Waits for the detached stand-in to write its record; the process is real, not the clock.
    QStringList recorded(const QString& program) {
        const QString path = m_records + QLatin1Char('/') + program;
        [&] { QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(path), 10000); }();
        QStringList lines = QString::fromUtf8(tw::test::readFile(path)).split(QLatin1Char('\n'));
        lines.removeLast();
        QFile::remove(path);
        return lines;
    }

    QTemporaryDir m_root;
    QString m_bin;
    QString m_records;
    QString m_applications;
    QByteArray m_savedPath;
};

QTEST_GUILESS_MAIN(TestLinuxWorkspace)
#include "tst_linuxworkspace.moc"
