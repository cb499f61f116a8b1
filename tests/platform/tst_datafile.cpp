#include "NotAFile.h"
#include "platform/DataFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using Status = tw::DataFile::Status;
Q_DECLARE_METATYPE(Status)

class TestDataFile : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Whatever sits at the path, the read returns: a FIFO with no writer or /dev/zero would
    // block or fill memory forever if it were opened and read like a file.
    void readsOnlyRegularFilesUpToTheCap_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<Status>("status");
        QTest::newRow("a file") << "file" << QByteArray("{\"a\":1}") << Status::regular;
        QTest::newRow("at the cap") << "file" << QByteArray(64, 'x') << Status::regular;
        QTest::newRow("over the cap") << "file" << QByteArray(65, 'x') << Status::tooLarge;
        QTest::newRow("a link to a file") << "link" << QByteArray("[]") << Status::regular;
        QTest::newRow("nothing") << "none" << QByteArray() << Status::missing;
        QTest::newRow("a FIFO") << "fifo" << QByteArray() << Status::notRegular;
        QTest::newRow("a link to /dev/zero") << "zero" << QByteArray() << Status::notRegular;
        QTest::newRow("a directory") << "dir" << QByteArray() << Status::notRegular;
        QTest::newRow("a link to nothing") << "dangling" << QByteArray() << Status::notRegular;
        QTest::newRow("a loop of links") << "loop" << QByteArray() << Status::notRegular;
    }
    void readsOnlyRegularFilesUpToTheCap() {
        QFETCH(QString, kind);
        QFETCH(QByteArray, bytes);
        QFETCH(Status, status);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grid.json"));
        const QString other = dir.filePath(QStringLiteral("other.json"));
        QFile file(kind == QStringLiteral("link") ? other : path);
        if (kind == QStringLiteral("file") || kind == QStringLiteral("link")) {
            QVERIFY(file.open(QIODevice::WriteOnly));
            QCOMPARE(file.write(bytes), bytes.size());
            file.close();
        }
        if (kind == QStringLiteral("link")) {
            QVERIFY(QFile::link(other, path));
        } else if (kind == QStringLiteral("loop")) {
            QVERIFY(QFile::link(path, other));
            QVERIFY(QFile::link(other, path));
        } else if (kind != QStringLiteral("file") && kind != QStringLiteral("none")) {
            QVERIFY(tw::test::placeNotAFile(kind, path));
        }
        const tw::DataFile::Contents contents = tw::DataFile::read(path, 64);
        QCOMPARE(contents.status, status);
        QCOMPARE(contents.bytes, status == Status::regular ? bytes : QByteArray());
        QCOMPARE(contents.problem.isEmpty(),
                 status == Status::regular || status == Status::missing);
    }
};

QTEST_GUILESS_MAIN(TestDataFile)
#include "tst_datafile.moc"
