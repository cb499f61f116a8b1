#include "Files.h"
#include "PrivateMount.h"
#include "TestRows.h"
#include "files/FileTransfer.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/mount.h>

using namespace tw;
using tw::test::names;
using tw::test::readFile;
using tw::test::row;
using tw::test::writeFile;

namespace {

const FileTransfer::FreeSpace plenty = [](const QString&) { return qint64(1) << 40; };

} // namespace

class TestFileTransfer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void uniqueName_data() {
        QTest::addColumn<QStringList>("present");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        row("free", names({}), "a.txt", "a.txt");
        row("taken", names({"a.txt"}), "a.txt", "a (2).txt");
        row("second taken", names({"a.txt", "a (2).txt"}), "a.txt", "a (3).txt");
        row("counter carried on", names({"a (2).txt"}), "a (2).txt", "a (3).txt");
        row("no extension", names({"Makefile"}), "Makefile", "Makefile (2)");
        row("dot file", names({".bashrc"}), ".bashrc", ".bashrc (2)");
        row("compound extension", names({"b.tar.gz"}), "b.tar.gz", "b (2).tar.gz");
        row("dots in the name", names({"v1.2.pdf"}), "v1.2.pdf", "v1.2 (2).pdf");
        row("folder", names({"Photos/"}), "Photos", "Photos (2)");
        row("dangling link", names({"l.txt@"}), "l.txt", "l (2).txt");
    }
    void uniqueName() {
        QFETCH(QStringList, present);
        QFETCH(QString, name);
        QFETCH(QString, expected);
        QTemporaryDir dir;
        for (const QString& item : present) {
            if (item.endsWith(QLatin1Char('/'))) {
                QVERIFY(QDir(dir.path()).mkdir(item.chopped(1)));
            } else if (item.endsWith(QLatin1Char('@'))) {
                QVERIFY(QFile::link(dir.filePath(QStringLiteral("nowhere")),
                                    dir.filePath(item.chopped(1))));
            } else {
                QVERIFY(writeFile(dir.filePath(item), "x"));
            }
        }
        QCOMPARE(FileTransfer::uniqueName(dir.path(), name), expected);
    }

    void transfer_data() {
        QTest::addColumn<bool>("copy");
        QTest::addColumn<bool>("folder");
        QTest::addColumn<bool>("collides");
        row("move a file", false, false, false);
        row("copy a file", true, false, false);
        row("move a file onto a taken name", false, false, true);
        row("move a folder", false, true, false);
        row("copy a folder onto a taken name", true, true, true);
    }
    void transfer() {
        QFETCH(bool, copy);
        QFETCH(bool, folder);
        QFETCH(bool, collides);
        QTemporaryDir from;
        QTemporaryDir to;
        const QString source = from.filePath(QStringLiteral("item"));
        const QString inner = folder ? QStringLiteral("/deep/file.txt") : QString();
        QVERIFY(writeFile(source + inner, "payload"));
        if (collides) {
            QVERIFY(writeFile(to.filePath(QStringLiteral("item")), "older"));
        }
        const FileTransfer::Result result = FileTransfer::transfer(
            source, to.path(), copy ? FileTransfer::Mode::copy : FileTransfer::Mode::move, plenty);
        QVERIFY2(result.ok() && result.error.isEmpty(), qPrintable(result.error));
        QCOMPARE(result.target,
                 to.filePath(collides ? QStringLiteral("item (2)") : QStringLiteral("item")));
        QCOMPARE(readFile(result.target + inner), QByteArray("payload"));
        QCOMPARE(QFileInfo::exists(source), copy);
        if (collides) {
            QCOMPARE(readFile(to.filePath(QStringLiteral("item"))), QByteArray("older"));
        }
    }

    void refusals_data() {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<qint64>("free");
        QTest::addColumn<QString>("error");
        row("gone", "missing.txt", "to", qint64(1) << 30, "no longer there");
        row("no folder", "a/file.txt", "absent", qint64(1) << 30, "isn't there");
        row("into itself", "a", "a/inner", qint64(1) << 30, "inside itself");
        row("no space", "a/file.txt", "to", qint64(3), "Not enough space");
    }
    void refusals() {
        QFETCH(QString, source);
        QFETCH(QString, folder);
        QFETCH(qint64, free);
        QFETCH(QString, error);
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a/file.txt")), "payload"));
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("a/inner")));
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("to")));
        // A rename would need no space: the copy is forced by asking for one.
        const FileTransfer::Result result = FileTransfer::transfer(
            dir.filePath(source), dir.filePath(folder), FileTransfer::Mode::copy,
            [free](const QString&) { return free; });
        QVERIFY(!result.ok());
        QVERIFY2(result.error.contains(error), qPrintable(result.error));
        QCOMPARE(readFile(dir.filePath(QStringLiteral("a/file.txt"))), QByteArray("payload"));
        QCOMPARE(QDir(dir.filePath(QStringLiteral("to"))).isEmpty(), true);
    }

    // A real small disk: moving onto it crosses devices, and a move that does not fit fails
    // half-way through the copy, which must leave the source whole and no part behind.
    void moveAcrossDisks() {
        if (!tw::test::enterPrivateMountNamespace()) {
            QSKIP("no mount namespace here");
        }
        QTemporaryDir from;
        QTemporaryDir disk;
        const QByteArray mountPoint = QFile::encodeName(disk.path());
        QVERIFY(mount("tmpfs", mountPoint.constData(), "tmpfs", 0, "size=64k") == 0);
        const QString small = from.filePath(QStringLiteral("small.txt"));
        const QString large = from.filePath(QStringLiteral("large.bin"));
        QVERIFY(writeFile(small, "fits"));
        QVERIFY(writeFile(large, QByteArray(1 << 20, 'x')));
        const auto trusting = [](const QString&) { return qint64(-1); };

        const FileTransfer::Result moved =
            FileTransfer::transfer(small, disk.path(), FileTransfer::Mode::move, trusting);
        QVERIFY2(moved.ok() && moved.error.isEmpty(), qPrintable(moved.error));
        QVERIFY(!QFileInfo::exists(small));
        QCOMPARE(readFile(moved.target), QByteArray("fits"));

        const FileTransfer::Result full =
            FileTransfer::transfer(large, disk.path(), FileTransfer::Mode::move, trusting);
        QVERIFY(!full.ok());
        QVERIFY2(full.error.contains(QStringLiteral("large.bin")), qPrintable(full.error));
        QCOMPARE(QFileInfo(large).size(), qint64(1) << 20);
        QCOMPARE(QDir(disk.path()).entryList(QDir::Files | QDir::Hidden), names({"small.txt"}));

        const FileTransfer::Result refused = FileTransfer::transfer(
            large, disk.path(), FileTransfer::Mode::move, FileTransfer::diskFreeSpace);
        QVERIFY2(refused.error.contains(QStringLiteral("Not enough space")),
                 qPrintable(refused.error));
        QVERIFY(umount(mountPoint.constData()) == 0);
    }
};

QTEST_GUILESS_MAIN(TestFileTransfer)
#include "tst_filetransfer.moc"
