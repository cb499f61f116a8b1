#include "Files.h"
#include "ManualClock.h"
#include "TestRows.h"
#include "platform/linux/TrashInfo.h"
#include "platform/linux/XdgTrash.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace tw;
using tw::test::readFile;
using tw::test::row;
using tw::test::writeFile;

class TestXdgTrash : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void decodeInfo_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QDateTime>("date");
        const QDateTime date(QDate(2004, 8, 31), QTime(22, 32, 8));
        row("plain",
            QByteArray("[Trash Info]\nPath=/home/u/a.txt\nDeletionDate=2004-08-31T22:32:08\n"),
            "/home/u/a.txt", date);
        row("percent-encoded", QByteArray("[Trash Info]\nPath=/home/u/caf%C3%A9%20menu.pdf\n"),
            "/home/u/café menu.pdf", QDateTime());
        row("crlf and spaces",
            QByteArray("[Trash Info]\r\nPath = rel/b\r\nDeletionDate=2004-08-31T22:32:08Z\r\n"),
            "rel/b", date);
        row("other group ignored", QByteArray("[Other]\nPath=/wrong\n[Trash Info]\nPath=/right\n"),
            "/right", QDateTime());
        row("first path wins", QByteArray("[Trash Info]\nPath=/one\nPath=/two\n"), "/one",
            QDateTime());
        row("bad date", QByteArray("[Trash Info]\nPath=/x\nDeletionDate=yesterday\n"), "/x",
            QDateTime());
        row("no path", QByteArray("[Trash Info]\nDeletionDate=2004-08-31T22:32:08\n"), "",
            QDateTime());
        row("no group", QByteArray("Path=/x\n"), "", QDateTime());
    }
    void decodeInfo() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, path);
        QFETCH(QDateTime, date);
        const std::optional<TrashInfo> info = TrashInfo::fromBytes(bytes);
        QCOMPARE(info.has_value(), !path.isEmpty());
        if (info) {
            QCOMPARE(info->path, path);
            QCOMPARE(info->deletionDate, date);
            QCOMPARE(TrashInfo::fromBytes(info->toBytes()), info);
        }
    }

    // Files count by their own size, folders by the cache where it is current and by summing
    // where it is missing or stale; links count as nothing.
    void contents() {
        QTemporaryDir dir;
        const QDir root(dir.path());
        test::ManualClock clock;
        XdgTrash trash(dir.path(), clock);
        QCOMPARE(trash.contents(), Trash::Contents{});
        QVERIFY(writeFile(root.filePath(QStringLiteral("files/a.txt")), QByteArray(100, 'a')));
        QVERIFY(writeFile(root.filePath(QStringLiteral("files/cached/x")), QByteArray(10, 'x')));
        QVERIFY(writeFile(root.filePath(QStringLiteral("files/stale/y")), QByteArray(20, 'y')));
        QVERIFY(
            writeFile(root.filePath(QStringLiteral("files/summed dir/z")), QByteArray(30, 'z')));
        QVERIFY(QFile::link(QStringLiteral("/etc/hostname"),
                            root.filePath(QStringLiteral("files/link"))));
        for (const char* name : {"a.txt", "cached", "stale", "summed dir", "link"}) {
            QVERIFY(writeFile(
                root.filePath(QStringLiteral("info/%1.trashinfo").arg(QString::fromUtf8(name))),
                "[Trash Info]\nPath=/x\n"));
        }
        const qint64 mtime = QFileInfo(root.filePath(QStringLiteral("info/cached.trashinfo")))
                                 .lastModified()
                                 .toSecsSinceEpoch();
        QVERIFY(writeFile(root.filePath(QStringLiteral("directorysizes")),
                          QByteArray::number(5000) + ' ' + QByteArray::number(mtime) + " cached\n" +
                              "7000 " + QByteArray::number(mtime - 100) + " stale\nbroken line\n"));
        QCOMPARE(trash.contents(), (Trash::Contents{.items = 5, .bytes = 100 + 5000 + 20 + 30}));
    }

    void moveAndEmpty() {
        QTemporaryDir home;
        QTemporaryDir dir;
        test::ManualClock clock;
        clock.setNow(QDateTime(QDate(2026, 11, 24), QTime(9, 30, 5)));
        XdgTrash trash(dir.filePath(QStringLiteral("Trash")), clock);
        const QString first = home.filePath(QStringLiteral("report 1.txt"));
        const QString folder = home.filePath(QStringLiteral("sub/report 1.txt"));
        QVERIFY(writeFile(first, "one"));
        QVERIFY(writeFile(folder, "two"));
        QVERIFY(writeFile(home.filePath(QStringLiteral("keep")), "stays"));

        const Trash::Result moved =
            trash.moveToTrash({first, folder, home.filePath(QStringLiteral("missing")),
                               dir.filePath(QStringLiteral("Trash"))});
        QCOMPARE(moved.done, 2);
        QVERIFY(!moved.ok());
        QVERIFY(!QFileInfo::exists(first) && !QFileInfo::exists(folder));
        const QDir files(dir.filePath(QStringLiteral("Trash/files")));
        QCOMPARE(readFile(files.filePath(QStringLiteral("report 1.txt"))), QByteArray("one"));
        QCOMPARE(readFile(files.filePath(QStringLiteral("report 1 (2).txt"))), QByteArray("two"));
        const std::optional<TrashInfo> info = TrashInfo::fromBytes(
            readFile(dir.filePath(QStringLiteral("Trash/info/report 1 (2).txt.trashinfo"))));
        QVERIFY(info);
        QCOMPARE(info->path, folder);
        QCOMPARE(info->deletionDate, clock.now());
        QCOMPARE(trash.contents(), (Trash::Contents{.items = 2, .bytes = 6}));

        const Trash::Result emptied = trash.empty();
        QCOMPARE(emptied.done, 2);
        QVERIFY(emptied.ok());
        QCOMPARE(trash.contents(), Trash::Contents{});
        QVERIFY(QDir(dir.filePath(QStringLiteral("Trash/info"))).isEmpty());
        QCOMPARE(readFile(home.filePath(QStringLiteral("keep"))), QByteArray("stays"));
    }

    // What lies on another disk goes to that disk's own trash, recorded by its path from the
    // disk's top, and is moved, not copied; every trash counts and empties.
    void otherDisksKeepTheirOwnTrash_data() {
        QTest::addColumn<bool>("shared");
        QTest::newRow("a folder of the user's at the top") << false;
        QTest::newRow("under a shared, sticky .Trash") << true;
    }
    void otherDisksKeepTheirOwnTrash() {
        QFETCH(bool, shared);
        QTemporaryDir home;
        QTemporaryDir disk;
        const QString top = QFileInfo(disk.path()).canonicalFilePath();
        const QString uid = QString::number(::getuid());
        if (shared) {
            QVERIFY(QDir(top).mkdir(QStringLiteral(".Trash")));
            QVERIFY(::chmod(QFile::encodeName(top + QStringLiteral("/.Trash")).constData(),
                            01777) == 0);
        }
        const QString own =
            top + (shared ? QStringLiteral("/.Trash/") : QStringLiteral("/.Trash-")) + uid;
        test::ManualClock clock;
        XdgTrash trash(home.filePath(QStringLiteral("Trash")), clock, [top] {
            return QStringList{QStringLiteral("/"), top};
        });
        const QString photo = top + QStringLiteral("/photos/a.jpg");
        const QString note = home.filePath(QStringLiteral("note.txt"));
        QVERIFY(writeFile(photo, "abc"));
        QVERIFY(writeFile(note, "hello"));

        QCOMPARE(trash.moveToTrash({photo, note}).done, 2);
        QCOMPARE(readFile(own + QStringLiteral("/files/a.jpg")), QByteArray("abc"));
        QCOMPARE(
            TrashInfo::fromBytes(readFile(own + QStringLiteral("/info/a.jpg.trashinfo")))->path,
            QStringLiteral("photos/a.jpg"));
        QCOMPARE(readFile(home.filePath(QStringLiteral("Trash/files/note.txt"))),
                 QByteArray("hello"));
        QVERIFY(trash.watchedFolders().contains(own + QStringLiteral("/files")));
        QCOMPARE(trash.contents(), (Trash::Contents{.items = 2, .bytes = 8}));
        // The disk's trash itself is not put in the trash.
        QVERIFY(!trash.moveToTrash({own}).ok());

        QCOMPARE(trash.empty().done, 2);
        QCOMPARE(trash.contents(), Trash::Contents{});
        QVERIFY(QDir(own + QStringLiteral("/files")).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestXdgTrash)
#include "tst_xdgtrash.moc"
