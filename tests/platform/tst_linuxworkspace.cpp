#include "model/WidgetAction.h"
#include "platform/linux/LinuxWorkspace.h"

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
        qputenv("XDG_DATA_DIRS", QFile::encodeName(m_root.filePath(QStringLiteral("none"))));
    }
    void cleanup() {
        qputenv("PATH", m_savedPath);
        qunsetenv("TW_RECORD_DIR");
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("XDG_DATA_DIRS");
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

    void failuresAreOnlyLogged() {
        LinuxWorkspace workspace;
        QTest::ignoreMessage(QtCriticalMsg, "action failed: no application named Nothing Here");
        WidgetAction::openApp(workspace, QStringLiteral("Nothing Here"));

        QTest::ignoreMessage(QtCriticalMsg, "action failed: could not start /usr/bin/shortcuts");
        WidgetAction::run(workspace, tw::WidgetActionKind::shortcut, QStringLiteral("Focus"));

        qputenv("PATH", QFile::encodeName(m_root.filePath(QStringLiteral("empty"))));
        QTest::ignoreMessage(QtCriticalMsg, "action failed: could not start xdg-open");
        WidgetAction::openURL(workspace, QStringLiteral("example.com"));
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
