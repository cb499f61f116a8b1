#include "FaultShim.h"
#include "platform/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Everything in the directory except the file under test: temporary files left behind show here.
QStringList strays(const QString& dir, const QString& keep) {
    QStringList names = QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::System);
    names.removeAll(keep);
    return names;
}

QByteArray payload(int size, char fill) {
    QByteArray bytes(size, fill);
    bytes.front() = '{';
    bytes.back() = '}';
    return bytes;
}

bool writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// A private mount namespace, so a tmpfs mounted here vanishes with the process, even on a crash.
bool enterPrivateMountNamespace() {
    if (geteuid() != 0) {
        const uid_t uid = geteuid();
        const gid_t gid = getegid();
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            return false;
        }
        const QByteArray uidMap = "0 " + QByteArray::number(uid) + " 1";
        const QByteArray gidMap = "0 " + QByteArray::number(gid) + " 1";
        return writeFile(QStringLiteral("/proc/self/setgroups"), "deny") &&
               writeFile(QStringLiteral("/proc/self/uid_map"), uidMap) &&
               writeFile(QStringLiteral("/proc/self/gid_map"), gidMap) &&
               mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    }
    return unshare(CLONE_NEWNS) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

class TestAtomicFile : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { twfault_disarm(); }

    void replacesTheFileWhole() {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grid.json"));
        QVERIFY(AtomicFileWrite(path, QByteArrayLiteral("{\"a\":1}")));
        QCOMPARE(readAll(path), QByteArrayLiteral("{\"a\":1}"));
        QVERIFY(AtomicFileWrite(path, QByteArrayLiteral("{}")));
        QCOMPARE(readAll(path), QByteArrayLiteral("{}"));
        QVERIFY(AtomicFileWrite(path, QByteArray()));
        QCOMPARE(QFileInfo(path).size(), 0);
        QCOMPARE(strays(dir.path(), QStringLiteral("grid.json")), QStringList());
    }

    void reportsAMissingDirectory() {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("gone/grid.json"));
        const auto result = tw::AtomicFile::write(path, QByteArrayLiteral("{}"));
        QVERIFY(!result.ok());
        QVERIFY(result.error.contains(QStringLiteral("open")));
        QVERIFY(!QFileInfo::exists(path));
    }

    // Each injected failure must leave the old file byte for byte, remove the temporary file,
    // say what failed, and let the next write succeed.
    void keepsTheOldBytesOnAFault_data() {
        QTest::addColumn<int>("calls");
        QTest::addColumn<int>("error");
        QTest::addColumn<int>("size");
        QTest::addColumn<QString>("step");
        const int buffered = 200;  // stays in QSaveFile's buffer until the flush
        const int direct = 100000; // goes to write() at once
        QTest::newRow("write ENOSPC, buffered")
            << int(TwFaultWrite) << ENOSPC << buffered << "flush";
        QTest::newRow("write ENOSPC, direct") << int(TwFaultWrite) << ENOSPC << direct << "write";
        QTest::newRow("write EIO, buffered") << int(TwFaultWrite) << EIO << buffered << "flush";
        QTest::newRow("write EIO, direct") << int(TwFaultWrite) << EIO << direct << "write";
        QTest::newRow("fsync EIO") << int(TwFaultSync) << EIO << buffered << "sync";
        QTest::newRow("fsync ENOSPC") << int(TwFaultSync) << ENOSPC << direct << "sync";
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

        twfault_arm(calls, error, -1, QFile::encodeName(dir.path()).constData());
        const auto result = tw::AtomicFile::write(path, payload(size, 'n'));
        twfault_disarm();
        QVERIFY(twfault_failures() > 0);
        QVERIFY2(!result.ok(), "a failed write must not report success");
        QVERIFY2(result.error.contains(step), qPrintable(result.error));
        QCOMPARE(readAll(path), old);
        QCOMPARE(strays(dir.path(), QStringLiteral("grid.json")), QStringList());

        const QByteArray next = payload(size, 'x');
        QVERIFY(tw::AtomicFile::write(path, next));
        QCOMPARE(readAll(path), next);
    }

    // A disk that really is full: a tiny tmpfs in a private mount namespace.
    void keepsTheOldBytesOnAFullDisk() {
        if (!enterPrivateMountNamespace()) {
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
            QCOMPARE(readAll(path), old);
            QCOMPARE(strays(dir.path(), QStringLiteral("grid.json")),
                     QStringList{QStringLiteral("filler")});
        }

        QVERIFY(QFile::remove(fillerPath));
        const QByteArray next = payload(8000, 'x');
        QVERIFY(tw::AtomicFile::write(path, next));
        QCOMPARE(readAll(path), next);
        QVERIFY(umount(root.constData()) == 0);
    }

    void removesOnlyStaleTemporaries_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("removed");
        const QString file = QStringLiteral("file");
        // Names QSaveFile gave its temporaries in a trial run.
        QTest::newRow("temporary") << QStringLiteral("grid.json.LHJYuG") << file << true;
        QTest::newRow("another temporary") << QStringLiteral("grid.json.uoUMzF") << file << true;
        QTest::newRow("a copy made by hand") << QStringLiteral("grid.json.backup") << file << false;
        QTest::newRow("in capitals") << QStringLiteral("grid.json.BACKUP") << file << false;
        QTest::newRow("seven letters") << QStringLiteral("grid.json.corrupt") << file << false;
        QTest::newRow("five letters") << QStringLiteral("grid.json.AbCdE") << file << false;
        QTest::newRow("a digit") << QStringLiteral("grid.json.Ab3dEf") << file << false;
        QTest::newRow("not ASCII")
            << QStringLiteral("grid.json.") + QChar(0x00C4) + QStringLiteral("bCdEf") << file
            << false;
        QTest::newRow("quarantined") << QStringLiteral("grid.json.AbCdEf.corrupt") << file << false;
        QTest::newRow("no dot") << QStringLiteral("grid.jsonxAbCdEf") << file << false;
        QTest::newRow("longer name") << QStringLiteral("xgrid.json.AbCdEf") << file << false;
        QTest::newRow("other case") << QStringLiteral("Grid.json.AbCdEf") << file << false;
        QTest::newRow("another file's") << QStringLiteral("theme.json.AbCdEf") << file << false;
        QTest::newRow("a directory")
            << QStringLiteral("grid.json.AbCdEf") << QStringLiteral("dir") << false;
        QTest::newRow("a link") << QStringLiteral("grid.json.AbCdEf") << QStringLiteral("link")
                                << false;
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
        QCOMPARE(readAll(path), QByteArrayLiteral("{}"));
        QCOMPARE(readAll(other), QByteArrayLiteral("keep"));
    }

    void removesEveryTemporaryWithoutTheFileItself() {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grid.json"));
        for (const char* name : {"grid.json.LHJYuG", "grid.json.uoUMzF", "grid.json.backup"}) {
            QVERIFY(writeFile(dir.filePath(QString::fromLatin1(name)), QByteArrayLiteral("{")));
        }
        QCOMPARE(tw::AtomicFile::removeStaleTemporaries(path), 2);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files),
                 QStringList{QStringLiteral("grid.json.backup")});
        QCOMPARE(tw::AtomicFile::removeStaleTemporaries(path), 0);
        QCOMPARE(
            tw::AtomicFile::removeStaleTemporaries(dir.filePath(QStringLiteral("gone/grid.json"))),
            0);
    }

private:
    static bool AtomicFileWrite(const QString& path, const QByteArray& bytes) {
        const auto result = tw::AtomicFile::write(path, bytes);
        if (!result) {
            qWarning("%s", qPrintable(result.error));
        }
        return result.ok();
    }
};

QTEST_GUILESS_MAIN(TestAtomicFile)
#include "tst_atomicfile.moc"
