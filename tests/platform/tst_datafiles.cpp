#include "FaultShim.h"
#include "Files.h"
#include "NotAFile.h"
#include "PrivateMount.h"
#include "TestRows.h"
#include "platform/AppPaths.h"
#include "platform/AtomicFile.h"
#include "platform/DataFile.h"
#include "platform/JsonRepair.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Everything in the directory except the file under test: temporary files left behind show here.
QStringList strays(const QString& dir, const QString& keep) {
    QStringList names = QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::System);
    names.removeAll(keep);
    return names;
}

QByteArray nested(int depth, const QByteArray& inner) {
    return QByteArray(depth, '[') + inner + QByteArray(depth, ']');
}

QByteArray payload(int size, char fill) {
    QByteArray bytes(size, fill);
    bytes.front() = '{';
    bytes.back() = '}';
    return bytes;
}

} // namespace

using Status = tw::DataFile::Status;
Q_DECLARE_METATYPE(Status)

using tw::test::readFile;
using tw::test::row;
using tw::test::writeFile;

// A data file's life: written whole or not at all, read only where a file is, mended where the
// parser would refuse it, set aside when unreadable.
class TestDataFiles : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { twfault_disarm(); }

    // Nothing to write still replaces the file, with an empty one.
    void anEmptyWriteEmptiesTheFile() {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grid.json"));
        QVERIFY(writeFile(path, "{}"));
        QVERIFY(tw::AtomicFile::write(path, QByteArray()));
        QCOMPARE(QFileInfo(path).size(), 0);
        QCOMPARE(strays(dir.path(), QStringLiteral("grid.json")), QStringList());
    }

    // Each injected failure must leave the old file byte for byte, remove the temporary file,
    // say what failed, and let the next write succeed.
    void keepsTheOldBytesOnAFault_data() {
        QTest::addColumn<int>("calls");
        QTest::addColumn<int>("error");
        QTest::addColumn<int>("size");
        QTest::addColumn<QString>("step");
        row("write ENOSPC, small", int(TwFaultWrite), ENOSPC, 200, "write");
        row("write EIO, large", int(TwFaultWrite), EIO, 100000, "write");
        row("fsync EIO", int(TwFaultSync), EIO, 200, "sync");
        row("fsync ENOSPC", int(TwFaultSync), ENOSPC, 100000, "sync");
        row("close EIO", int(TwFaultClose), EIO, 200, "close");
    }
    void keepsTheOldBytesOnAFault() {
        QFETCH(int, calls);
        QFETCH(int, error);
        QFETCH(int, size);
        QFETCH(QString, step);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grid.json"));
        const QByteArray old = payload(3000, 'o');
        QVERIFY(tw::AtomicFile::write(path, old));

        twfault_arm(calls, error, 1, QFile::encodeName(dir.path()).constData());
        const auto result = tw::AtomicFile::write(path, payload(size, 'n'));
        twfault_disarm();
        QVERIFY(twfault_failures() > 0);
        QVERIFY2(!result.ok(), "a failed write must not report success");
        QVERIFY2(result.error.contains(step), qPrintable(result.error));
        QCOMPARE(readFile(path), old);
        QCOMPARE(strays(dir.path(), QStringLiteral("grid.json")), QStringList());

        const QByteArray next = payload(size, 'x');
        QVERIFY(tw::AtomicFile::write(path, next));
        QCOMPARE(readFile(path), next);
    }

    // A disk that really is full: a tiny tmpfs in a private mount namespace.
    void keepsTheOldBytesOnAFullDisk() {
        if (!tw::test::enterPrivateMountNamespace()) {
            QSKIP("no mount namespace here; the injected faults above cover the failure paths");
        }
        QTemporaryDir dir;
        const QByteArray root = QFile::encodeName(dir.path());
        QVERIFY2(mount("tmpfs", root.constData(), "tmpfs", 0, "size=64k") == 0,
                 qPrintable(QString::fromLocal8Bit(strerror(errno))));
        const QString path = dir.filePath(QStringLiteral("grid.json"));
        const QByteArray old = payload(3000, 'o');
        QVERIFY(tw::AtomicFile::write(path, old));

        // Fill every remaining block.
        const QString fillerPath = dir.filePath(QStringLiteral("filler"));
        {
            QFile filler(fillerPath);
            QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
            const QByteArray block(4096, 'f');
            while (filler.write(block) == block.size()) {
            }
        }
        for (const int size : {200, 8000}) {
            const auto result = tw::AtomicFile::write(path, payload(size, 'n'));
            QVERIFY2(!result.ok(), "a write to a full disk must not report success");
            QCOMPARE(readFile(path), old);
            QCOMPARE(strays(dir.path(), QStringLiteral("grid.json")),
                     QStringList{QStringLiteral("filler")});
        }

        QVERIFY(QFile::remove(fillerPath));
        const QByteArray next = payload(8000, 'x');
        QVERIFY(tw::AtomicFile::write(path, next));
        QCOMPARE(readFile(path), next);
        QVERIFY(umount(root.constData()) == 0);
    }

    // Only what this class can have left is removed: its own pattern, from a process that is gone.
    void removesOnlyStaleTemporaries_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("removed");
        const QString file = QStringLiteral("file");
        const QString gone = QStringLiteral("grid.json.4194305-0a1b2c3d.tarnwick-partial");
        const QString mine = QStringLiteral("grid.json.%1-0a1b2c3d.tarnwick-partial")
                                 .arg(QCoreApplication::applicationPid());
        row("of a process that is gone", gone, file, true);
        row("of this process, from before", mine, file, true);
        row("of a running process", QStringLiteral("grid.json.1-0a1b2c3d.tarnwick-partial"), file,
            false);
        row("a copy in mixed case", QStringLiteral("grid.json.Backup"), file, false);
        row("quarantined", gone + QStringLiteral(".corrupt"), file, false);
        row("capital hex", QStringLiteral("grid.json.4194305-0A1B2C3D.tarnwick-partial"), file,
            false);
        row("short token", QStringLiteral("grid.json.4194305-0a1b2c3.tarnwick-partial"), file,
            false);
        row("no process", QStringLiteral("grid.json.-0a1b2c3d.tarnwick-partial"), file, false);
        row("another file's", QStringLiteral("theme.json.4194305-0a1b2c3d.tarnwick-partial"), file,
            false);
        row("a longer name", QStringLiteral("xgrid.json.4194305-0a1b2c3d.tarnwick-partial"), file,
            false);
        row("a directory", gone, QStringLiteral("dir"), false);
        row("a link", gone, QStringLiteral("link"), false);
    }
    void removesOnlyStaleTemporaries() {
        QFETCH(QString, name);
        QFETCH(QString, kind);
        QFETCH(bool, removed);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grid.json"));
        const QString other = dir.filePath(QStringLiteral("notes.txt"));
        QVERIFY(writeFile(path, QByteArrayLiteral("{}")));
        QVERIFY(writeFile(other, QByteArrayLiteral("keep")));
        const QString candidate = dir.filePath(name);
        if (kind == QStringLiteral("dir")) {
            QVERIFY(QDir().mkdir(candidate));
        } else if (kind == QStringLiteral("link")) {
            QVERIFY(QFile::link(other, candidate));
        } else {
            QVERIFY(writeFile(candidate, QByteArrayLiteral("{\"half")));
        }
        QCOMPARE(tw::AtomicFile::removeStaleTemporaries(path), removed ? 1 : 0);
        QCOMPARE(QFileInfo::exists(candidate), !removed);
        QCOMPARE(readFile(path), QByteArrayLiteral("{}"));
        QCOMPARE(readFile(other), QByteArrayLiteral("keep"));
    }

    // A process killed in the middle of a write leaves a temporary that the next start removes,
    // and only that.
    void aWriteCutShortIsCleanedUpAtTheNextStart() {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grid.json"));
        QVERIFY(writeFile(path, "{}"));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("grid.json.Backup")), "{"));
        const pid_t child = fork();
        if (child == 0) {
            // The kernel kills the writer with SIGXFSZ once the file passes 4 KiB.
            const rlimit limit{4096, 4096};
            setrlimit(RLIMIT_FSIZE, &limit);
            tw::AtomicFile::write(path, QByteArray(100000, 'x'));
            _exit(0);
        }
        QVERIFY(child > 0);
        int status = 0;
        QCOMPARE(waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(strays(dir.path(), QStringLiteral("grid.json")).size(), 2);
        QCOMPARE(tw::AtomicFile::removeStaleTemporaries(path), 1);
        QCOMPARE(strays(dir.path(), QStringLiteral("grid.json")),
                 QStringList{QStringLiteral("grid.json.Backup")});
        QCOMPARE(readFile(path), QByteArrayLiteral("{}"));
    }

    // Whatever sits at the path, reading returns (a FIFO with no writer or /dev/zero would block
    // or fill memory forever if read like a file), and nothing but a regular file, or a link to
    // one, is replaced or written through. A link's target is gone/grid.json.
    void whatSitsAtThePath_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<Status>("status");
        QTest::addColumn<bool>("written");
        row("a file", "file", QByteArray("{\"a\":1}"), Status::regular, true);
        row("at the read cap", "file", QByteArray(64, 'x'), Status::regular, true);
        row("over the read cap", "file", QByteArray(65, 'x'), Status::tooLarge, true);
        row("a link to a file", "link", QByteArray("[]"), Status::regular, true);
        row("nothing", "none", QByteArray(), Status::missing, true);
        row("in a missing directory", "nodir", QByteArray(), Status::missing, false);
        row("a FIFO", "fifo", QByteArray(), Status::notRegular, false);
        row("a link to /dev/zero", "zero", QByteArray(), Status::notRegular, false);
        row("a directory", "dir", QByteArray(), Status::notRegular, false);
        row("a link to nothing", "dangling", QByteArray(), Status::notRegular, false);
        row("a loop of links", "loop", QByteArray(), Status::notRegular, false);
    }
    void whatSitsAtThePath() {
        QFETCH(QString, kind);
        QFETCH(QByteArray, bytes);
        QFETCH(Status, status);
        QFETCH(bool, written);
        QTemporaryDir dir;
        const QString path =
            dir.filePath(kind == QLatin1String("nodir") ? QStringLiteral("none/grid.json")
                                                        : QStringLiteral("grid.json"));
        const QString elsewhere = dir.filePath(QStringLiteral("gone/grid.json"));
        QVERIFY(QDir().mkpath(QFileInfo(elsewhere).path()));
        if (kind == QLatin1String("file") || kind == QLatin1String("link")) {
            QVERIFY(writeFile(kind == QLatin1String("link") ? elsewhere : path, bytes));
        }
        if (kind == QLatin1String("link")) {
            QVERIFY(QFile::link(elsewhere, path));
        } else if (kind == QLatin1String("loop")) {
            QVERIFY(QFile::link(path, elsewhere) && QFile::link(elsewhere, path));
        } else if (!QStringList{QStringLiteral("file"), QStringLiteral("none"),
                                QStringLiteral("nodir")}
                        .contains(kind)) {
            QVERIFY(tw::test::placeNotAFile(kind, path));
        }
        const tw::DataFile::Contents contents = tw::DataFile::read(path, 64);
        QCOMPARE(contents.status, status);
        QCOMPARE(contents.bytes, status == Status::regular ? bytes : QByteArray());
        QCOMPARE(contents.problem.isEmpty(),
                 status == Status::regular || status == Status::missing);

        const QFileInfo before(path);
        const auto result = tw::AtomicFile::write(path, QByteArrayLiteral("{\"b\":2}"));
        QCOMPARE(result.ok(), written);
        QVERIFY(written || result.error.contains(QStringLiteral("open")));
        const QFileInfo after(path);
        QCOMPARE(after.isSymLink(), before.isSymLink());
        QCOMPARE(after.isDir(), before.isDir());
        QCOMPARE(readFile(written && kind != QLatin1String("link") ? path : elsewhere),
                 written ? QByteArrayLiteral("{\"b\":2}") : QByteArray());
        QCOMPARE(strays(dir.path(), QStringLiteral("grid.json")), QStringList());
        QCOMPARE(strays(QFileInfo(elsewhere).path(), QStringLiteral("grid.json")), QStringList());
    }

    void mendsWhatTheParserRefuses_data() {
        QTest::addColumn<QByteArray>("in");
        QTest::addColumn<QByteArray>("out");
        QTest::addColumn<QString>("summary");
        const QByteArray fffd("\xEF\xBF\xBD");
        const QByteArray sound("{\"a\":[1e308,-2.5E-3,\"\\\"1e400\\\"\"]}");
        row("sound", sound, sound, "");
        row("numbers out of range", QByteArray(R"({"a":1e400,"b":[-1E999,2e-400],"c":3})"),
            QByteArray(R"({"a":null,"b":[null,null],"c":3})"), "3 numbers out of range made null");
        row("a stray byte in a key and a value", QByteArray("{\"k\xff\":\"v\xfe\"}"),
            "{\"k" + fffd + "\":\"v" + fffd + "\"}", "2 invalid UTF-8 sequences replaced");
        row("valid sequences stay", QByteArray("[\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\"]"),
            QByteArray("[\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\"]"), "");
        row("overlong, surrogate, cut short: one each",
            QByteArray("[\"\xC0\x80|\xED\xA0\x80|\xE2\x82\"]"),
            "[\"" + fffd + fffd + "|" + fffd + fffd + fffd + "|" + fffd + "\"]",
            "6 invalid UTF-8 sequences replaced");
        row("an escape takes one byte, whatever it is",
            QByteArray("[\"\\\"\xff\\\xde\xd3\x84\xda\"]"),
            "[\"\\\"" + fffd + "\\\xde\xd3\x84" + fffd + "\"]",
            "2 invalid UTF-8 sequences replaced");
        row("nesting at the limit stays", nested(tw::JsonRepair::maxDepth, "1"),
            nested(tw::JsonRepair::maxDepth, "1"), "");
        row("one level more is cut, its neighbour stays",
            "[" + nested(tw::JsonRepair::maxDepth, "\"]]\"") + ",2]",
            "[" + nested(tw::JsonRepair::maxDepth - 1, "null") + ",2]",
            "1 branch nested too deep cut");
    }
    void mendsWhatTheParserRefuses() {
        QFETCH(QByteArray, in);
        QFETCH(QString, summary);
        const tw::JsonRepair repair = tw::repairJson(in);
        QTEST(repair.bytes, "out");
        QCOMPARE(repair.summary(), summary);
        QCOMPARE(repair.changed(), !summary.isEmpty());
        QJsonParseError error{};
        QJsonDocument::fromJson(repair.bytes, &error);
        QCOMPARE(error.error, QJsonParseError::NoError);
    }

    void usesAndCreatesTheEnvironmentDirectory() {
        QTemporaryDir dir;
        const QString wanted = dir.filePath(QStringLiteral("a/b/Tarnwick"));
        qputenv("TKW_APP_SUPPORT_DIR", QFile::encodeName(wanted));
        QCOMPARE(tw::AppPaths::appSupportDir(), wanted);
        QVERIFY(QFileInfo(wanted).isDir());
        qunsetenv("TKW_APP_SUPPORT_DIR");
        QVERIFY(tw::AppPaths::appSupportDir().endsWith(QStringLiteral("/Tarnwick")));
    }

    void quarantineNames_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        row("json", "grid.json", "grid.2026-03-14-092653.corrupt");
        row("two dots", "topology.homes.json", "topology.homes.2026-03-14-092653.corrupt");
        row("no extension", "grid", "grid.2026-03-14-092653.corrupt");
    }
    void quarantineNames() {
        QFETCH(QString, name);
        QFETCH(QString, expected);
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(name), "not json"));
        const QDateTime at(QDate(2026, 3, 14), QTime(9, 26, 53, 700));
        QCOMPARE(tw::AppPaths::quarantineUnreadable(dir.filePath(name), at),
                 dir.filePath(expected));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{expected});
        QCOMPARE(readFile(dir.filePath(expected)), QByteArrayLiteral("not json"));
    }

    void nothingToSetAside() {
        QTemporaryDir dir;
        QCOMPARE(tw::AppPaths::quarantineUnreadable(dir.filePath(QStringLiteral("grid.json"))),
                 QString());
        QVERIFY(QDir(dir.path()).isEmpty());
    }

    // Three unreadable files within one second: every one of them is kept.
    void quarantinesWithinOneSecondKeepEveryFile() {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grid.json"));
        const QDateTime at(QDate(2026, 3, 14), QTime(9, 26, 53));
        QStringList targets;
        for (int i = 0; i < 3; ++i) {
            QVERIFY(writeFile(path, QByteArray::number(i)));
            targets << tw::AppPaths::quarantineUnreadable(path, at.addMSecs(i * 300));
        }
        QCOMPARE(targets,
                 (QStringList{dir.filePath(QStringLiteral("grid.2026-03-14-092653.corrupt")),
                              dir.filePath(QStringLiteral("grid.2026-03-14-092653-2.corrupt")),
                              dir.filePath(QStringLiteral("grid.2026-03-14-092653-3.corrupt"))}));
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(readFile(targets.at(i)), QByteArray::number(i));
        }
        QVERIFY(!QFileInfo::exists(path));
    }

    // A directory that refuses the rename, root or not: the file stays whole where it was.
    void aFailedMoveKeepsTheFile() {
        if (!tw::test::enterPrivateMountNamespace()) {
            QSKIP("no mount namespace here to make a directory read-only");
        }
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grid.json"));
        QVERIFY(writeFile(path, "x"));
        QVERIFY(tw::test::mountReadOnly(dir.path()));
        const QString target = tw::AppPaths::quarantineUnreadable(path);
        QCOMPARE(umount(QFile::encodeName(dir.path()).constData()), 0);
        QCOMPARE(target, QString());
        QCOMPARE(readFile(path), QByteArrayLiteral("x"));
    }
};

QTEST_GUILESS_MAIN(TestDataFiles)
#include "tst_datafiles.moc"
