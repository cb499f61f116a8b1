#include "Files.h"
#include "NotAFile.h"
#include "TestRows.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/XdgAutostart.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using tw::DesktopEntry;
using tw::test::row;
using tw::test::writeFile;

class TestDesktopEntry : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // The arguments joined by "|".
    void commandLine_data() {
        QTest::addColumn<QString>("exec");
        QTest::addColumn<QString>("command");
        row("field code dropped", "gedit %U", "gedit");
        row("quoted program", "\"/opt/My App/bin/app\" --new-window %u",
            "/opt/My App/bin/app|--new-window");
        row("escaped quote in quotes", "sh -c \"echo \\\"hi\\\"\"", "sh|-c|echo \"hi\"");
        row("embedded field code", "app --file=%f", "app|--file=");
        row("literal percent", "app 100%%", "app|100%");
        row("empty quoted argument kept", "app \"\"", "app|");
        row("blanks collapse", "  app   -x  ", "app|-x");
        row("nothing", "%U", "");
    }
    void commandLine() {
        QFETCH(QString, exec);
        QFETCH(QString, command);
        DesktopEntry entry;
        entry.exec = exec;
        const QStringList words = entry.commandLine();
        QCOMPARE(words.join(QLatin1Char('|')), command);
        QCOMPARE(words.isEmpty(), command.isEmpty());
    }

    void parseReadsTheMainGroupOnly() {
        const auto entry =
            DesktopEntry::parse(QByteArrayLiteral("# comment\n"
                                                  "[Desktop Entry]\n"
                                                  "Type=Application\n"
                                                  "Name=Text Editor\n"
                                                  "Name[de]=Texteditor\n"
                                                  "Exec=sh -c \"echo \\\\\"a\\\\\\\\b\\\\\"\"\n"
                                                  "Path=/srv/work\n"
                                                  "[Desktop Action new-window]\n"
                                                  "Exec=other\n"
                                                  "Name=New Window\n"));
        QVERIFY(entry);
        QCOMPARE(entry->name, QStringLiteral("Text Editor"));
        QCOMPARE(entry->path, QStringLiteral("/srv/work"));
        QVERIFY(entry->isApplication);
        QVERIFY(!entry->hidden);
        // The file's "\\" is one backslash before the Exec line's own quoting applies.
        QCOMPARE(entry->commandLine(), (QStringList{QStringLiteral("sh"), QStringLiteral("-c"),
                                                    QStringLiteral("echo \"a\\b\"")}));
    }

    void parseRejectsOtherFiles_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("parsed");
        QTest::addColumn<bool>("application");
        QTest::addColumn<bool>("hidden");
        row("no main group", QByteArray("Name=x\nExec=y\n"), false, false, false);
        row("link", QByteArray("[Desktop Entry]\nType=Link\nURL=https://x\n"), true, false, false);
        row("hidden", QByteArray("[Desktop Entry]\nType=Application\nHidden=true\n"), true, true,
            true);
        row("binary garbage", QByteArray("\x00\xff[Desktop\n", 10), false, false, false);
    }
    void parseRejectsOtherFiles() {
        QFETCH(QByteArray, text);
        const auto entry = DesktopEntry::parse(text);
        QTEST(entry.has_value(), "parsed");
        if (entry) {
            QTEST(entry->isApplication, "application");
            QTEST(entry->hidden, "hidden");
        }
    }

    // Whatever sits in an applications directory, reading never hangs or fills the memory.
    void readsOnlyRegularFilesOfModestSize_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("read");
        row("an entry", "file", true);
        row("an entry past the size cap", "huge", false);
        row("a FIFO", "fifo", false);
        row("a directory", "dir", false);
        row("a link to a device", "zero", false);
    }
    void readsOnlyRegularFilesOfModestSize() {
        QFETCH(QString, kind);
        QFETCH(bool, read);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("app.desktop"));
        const QByteArray entry = QByteArrayLiteral("[Desktop Entry]\nType=Application\nExec=x\n");
        if (kind == QStringLiteral("file") || kind == QStringLiteral("huge")) {
            QVERIFY(writeFile(path, kind == QStringLiteral("huge")
                                        ? entry + QByteArray(DesktopEntry::maximumSize, '#')
                                        : entry));
        } else {
            QVERIFY(tw::test::placeNotAFile(kind, path));
        }
        QCOMPARE(DesktopEntry::read(path).has_value(), read);
    }

    // The login entry: written into a folder that does not exist yet, read back as one that starts
    // this program with the login flag, turned off by the session's Hidden, and removed.
    void autostartWrittenReadAndRemoved() {
        QTemporaryDir home;
        const QString program = home.filePath(QStringLiteral("odd \"dir\" $HOME/tarnwick"));
        tw::XdgAutostart item(home.filePath(QStringLiteral("autostart")), program);
        QVERIFY(!item.isEnabled());
        QVERIFY(item.setEnabled(true));
        QVERIFY(item.isEnabled());
        const std::optional<DesktopEntry> entry = DesktopEntry::read(item.entryPath());
        QVERIFY(entry);
        QCOMPARE(entry->commandLine(),
                 (QStringList{program, QLatin1String(tw::XdgAutostart::loginFlag)}));
        QVERIFY(item.startedAtLogin(entry->commandLine()));
        QVERIFY(!item.startedAtLogin({program}));

        QFile file(item.entryPath());
        QVERIFY(file.open(QIODevice::Append));
        file.write("Hidden=true\n");
        file.close();
        QVERIFY(!item.isEnabled());

        QVERIFY(item.setEnabled(false));
        QVERIFY(!QFile::exists(item.entryPath()));
        QVERIFY(item.setEnabled(false));
    }

    void autostartInAnUnwritableFolderSaysSo() {
        QTemporaryDir home;
        const QString blocker = home.filePath(QStringLiteral("autostart"));
        QVERIFY(writeFile(blocker, {}));
        tw::XdgAutostart item(blocker, QStringLiteral("/usr/bin/tarnwick"));
        QVERIFY(!item.setEnabled(true));
        QVERIFY(!item.isEnabled());
    }
};

QTEST_GUILESS_MAIN(TestDesktopEntry)
#include "tst_desktopentry.moc"
