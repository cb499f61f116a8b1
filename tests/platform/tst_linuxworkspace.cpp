#include "model/WidgetAction.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/null/NullNotifications.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using tw::LinuxWorkspace;
using tw::WidgetAction;

namespace {

// A program that writes its arguments, one a line, to $TW_RECORD_DIR/<its name>.
void writeRecorder(const QString& path) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n"
               "out=\"$TW_RECORD_DIR/$(basename \"$0\")\"\n"
               "printf '%s\\n' \"$@\" > \"$out.part\" && mv \"$out.part\" \"$out\"\n");
    file.close();
    QVERIFY(file.setPermissions(file.permissions() | QFile::ExeOwner));
}

void writeFile(const QString& path, const QByteArray& text) {
    QVERIFY(QDir().mkpath(QFileInfo(path).absolutePath()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

} // namespace

// Runs the real implementation against stand-ins for xdg-open and applications, found through
// PATH and the XDG data directories of a temporary home.
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
        writeFile(m_applications + QLatin1String("/org.example.Editor.desktop"),
                  "[Desktop Entry]\nType=Application\nName=Fake Editor\nExec=" +
                      QFile::encodeName(m_bin) + "/fake-editor --new %U\n");
        writeFile(m_applications + QLatin1String("/org.example.Gone.desktop"),
                  "[Desktop Entry]\nType=Application\nName=Gone\nHidden=true\nExec=" +
                      QFile::encodeName(m_bin) + "/fake-editor\n");
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

    void opensAddressesWithXdgOpen_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("argument");
        QTest::newRow("web address") << "example.com/a b"
                                     << "https://example.com/a%20b";
        QTest::newRow("mail link") << "mailto:ada@example.com"
                                   << "mailto:ada@example.com";
    }
    void opensAddressesWithXdgOpen() {
        QFETCH(QString, text);
        QFETCH(QString, argument);
        LinuxWorkspace workspace;
        WidgetAction::openURL(workspace, text);
        QCOMPARE(recorded(QStringLiteral("xdg-open")), QStringList{argument});
    }

    void opensAnExistingFileByItsPath() {
        const QString file = m_root.filePath(QStringLiteral("my notes.txt"));
        writeFile(file, "x");
        LinuxWorkspace workspace;
        WidgetAction::openApp(workspace, file);
        QCOMPARE(recorded(QStringLiteral("xdg-open")), QStringList{file});
    }

    void startsApplicationsFromDesktopEntries_data() {
        QTest::addColumn<QString>("target");
        QTest::newRow("by desktop-entry id") << "org.example.Editor";
        QTest::newRow("by name, any case") << "fake editor";
        QTest::newRow("by file name") << "ORG.EXAMPLE.EDITOR";
    }
    void startsApplicationsFromDesktopEntries() {
        QFETCH(QString, target);
        LinuxWorkspace workspace;
        WidgetAction::openApp(workspace, target);
        QCOMPARE(recorded(QStringLiteral("fake-editor")), QStringList{QStringLiteral("--new")});
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

    void startsAProgramByName() {
        LinuxWorkspace workspace;
        WidgetAction::openApp(workspace, QStringLiteral("Fake-Editor"));
        QCOMPARE(recorded(QStringLiteral("fake-editor")), QStringList{QString()});
    }

    // Each file is "<path under the root>|<content>"; a desktop entry's content is the lines
    // after a runnable header.
    void applicationForRole_data() {
        QTest::addColumn<QString>("role");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("expected");
        const QString a = QStringLiteral("share/applications/a.desktop|MimeType=text/calendar;");
        const QString b = QStringLiteral("data/applications/b.desktop|MimeType=text/calendar;");
        const QString defaultB =
            QStringLiteral("[Default Applications]\ntext/calendar=b.desktop\n");
        QTest::newRow("the person's default")
            << "calendar" << QStringList{a, b, QStringLiteral("config/mimeapps.list|") + defaultB}
            << "data/applications/b.desktop";
        QTest::newRow("the desktop's own list first")
            << "calendar"
            << QStringList{a, b, QStringLiteral("config/mimeapps.list|") + defaultB,
                           QStringLiteral("config/test-mimeapps.list|[Default Applications]\n"
                                          "text/calendar=a.desktop")}
            << "share/applications/a.desktop";
        QTest::newRow("a default not installed falls through to the next file")
            << "calendar"
            << QStringList{a, b,
                           QStringLiteral("config/mimeapps.list|[Default Applications]\n"
                                          "text/calendar=gone.desktop;"),
                           QStringLiteral("share/applications/mimeapps.list|") + defaultB}
            << "data/applications/b.desktop";
        QTest::newRow("the system's default")
            << "calendar"
            << QStringList{a, b, QStringLiteral("etc/gnome-mimeapps.list|") + defaultB}
            << "data/applications/b.desktop";
        QTest::newRow("an added association before a declared type")
            << "calendar"
            << QStringList{a, QStringLiteral("data/applications/b.desktop|"),
                           QStringLiteral("config/mimeapps.list|[Added Associations]\n"
                                          "text/calendar=b.desktop;")}
            << "data/applications/b.desktop";
        QTest::newRow("a removed association is passed over")
            << "calendar"
            << QStringList{a, b,
                           QStringLiteral("config/mimeapps.list|[Removed Associations]\n"
                                          "text/calendar=a.desktop")}
            << "data/applications/b.desktop";
        QTest::newRow("a default whose TryExec is missing")
            << "calendar"
            << QStringList{a, b + QStringLiteral("\nTryExec=/nonexistent/calendar"),
                           QStringLiteral("config/mimeapps.list|") + defaultB}
            << "share/applications/a.desktop";
        QTest::newRow("shown only in another desktop")
            << "calendar" << QStringList{b + QStringLiteral("\nOnlyShowIn=KDE;")} << "";
        QTest::newRow("the person's hidden copy hides the system's entry")
            << "calendar"
            << QStringList{QStringLiteral("share/applications/b.desktop|MimeType=text/calendar;"),
                           QStringLiteral("data/applications/b.desktop|Hidden=true")}
            << "";
        QTest::newRow("a terminal by its URL scheme")
            << "terminal"
            << QStringList{QStringLiteral(
                               "share/applications/t.desktop|Categories=TerminalEmulator"),
                           QStringLiteral("share/applications/u.desktop|"),
                           QStringLiteral("config/mimeapps.list|[Default Applications]\n"
                                          "x-scheme-handler/terminal=u.desktop")}
            << "share/applications/u.desktop";
        QTest::newRow("a terminal by its category")
            << "terminal"
            << QStringList{QStringLiteral(
                   "share/applications/t.desktop|Categories=System;TerminalEmulator;")}
            << "share/applications/t.desktop";
        QTest::newRow("a clock hidden from menus is passed over")
            << "clock"
            << QStringList{QStringLiteral(
                               "share/applications/x.desktop|Categories=Clock;\nNoDisplay=true"),
                           QStringLiteral("share/applications/y.desktop|Categories=Utility;Clock;")}
            << "share/applications/y.desktop";
        QTest::newRow("the weather by a keyword")
            << "weather"
            << QStringList{QStringLiteral(
                   "share/applications/w.desktop|Keywords=weather;forecast;")}
            << "share/applications/w.desktop";
        QTest::newRow("an id from a subdirectory")
            << "file-manager"
            << QStringList{QStringLiteral("data/applications/kde/f.desktop|"),
                           QStringLiteral("config/mimeapps.list|[Default Applications]\n"
                                          "inode/directory=kde-f.desktop")}
            << "data/applications/kde/f.desktop";
        QTest::newRow("nothing takes the role") << "photos" << QStringList{a, b} << "";
    }
    void applicationForRole() {
        QFETCH(QString, role);
        QFETCH(QStringList, files);
        QFETCH(QString, expected);
        for (const QString& file : files) {
            const QString path = m_root.filePath(file.section(QLatin1Char('|'), 0, 0));
            const QString content = file.section(QLatin1Char('|'), 1);
            if (path.endsWith(QLatin1String(".desktop"))) {
                writeFile(path, "[Desktop Entry]\nType=Application\nName=x\nExec=" +
                                    QFile::encodeName(m_bin) + "/fake-editor\n" + content.toUtf8() +
                                    '\n');
            } else {
                writeFile(path, content.toUtf8());
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

private:
    // Waits for the detached stand-in to write its record; the process is real, not the clock.
    QStringList recorded(const QString& program) {
        const QString path = m_records + QLatin1Char('/') + program;
        [&] { QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(path), 10000); }();
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            return {QStringLiteral("<no record>")};
        }
        QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        lines.removeLast();
        file.remove();
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
