#include "Files.h"
#include "PrivateMount.h"
#include "TestRows.h"
#include "platform/AppPaths.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/mount.h>

using tw::test::readFile;
using tw::test::row;
using tw::test::writeFile;

class TestAppPaths : public QObject {
    Q_OBJECT
private Q_SLOTS:
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

QTEST_GUILESS_MAIN(TestAppPaths)
#include "tst_apppaths.moc"
