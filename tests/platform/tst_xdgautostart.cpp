#include "Files.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/XdgAutostart.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;

class tst_XdgAutostart : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Written into a folder that does not exist yet, read back as a launchable entry that starts
    // this program with the login flag, turned off by the session's Hidden, and removed.
    void writtenReadAndRemoved() {
        QTemporaryDir home;
        const QString program = home.filePath(QStringLiteral("odd \"dir\" $HOME/tarnwick"));
        XdgAutostart item(home.filePath(QStringLiteral("autostart")), program);
        QVERIFY(!item.isEnabled());
        QVERIFY(item.setEnabled(true));
        QVERIFY(item.isEnabled());
        const std::optional<DesktopEntry> entry = DesktopEntry::read(item.entryPath());
        QVERIFY(entry);
        QCOMPARE(entry->commandLine(),
                 (QStringList{program, QLatin1String(XdgAutostart::loginFlag)}));
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

    void unwritableFolderSaysSo() {
        QTemporaryDir home;
        const QString blocker = home.filePath(QStringLiteral("autostart"));
        QVERIFY(test::writeFile(blocker, {}));
        XdgAutostart item(blocker, QStringLiteral("/usr/bin/tarnwick"));
        QVERIFY(!item.setEnabled(true));
        QVERIFY(!item.isEnabled());
    }
};

QTEST_MAIN(tst_XdgAutostart)
#include "tst_xdgautostart.moc"
