#include "LoopbackHttpServer.h"
#include "TestRows.h"
#include "net/BodyInflater.h"

#include <QTest>

using namespace tw;
using tw::test::row;
using Status = BodyInflater::Status;

namespace {

// A zlib stream, the "deflate" encoding: qCompress's output after its four-byte length prefix.
QByteArray zlibOf(const QByteArray& data) {
    return qCompress(data).mid(4);
}

} // namespace

class TestBodyInflater : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void feed_data() {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<qint64>("cap");
        QTest::addColumn<int>("pieces"); // the input fed in this many slices
        QTest::addColumn<Status>("status");
        QTest::addColumn<qint64>("outputSize");
        const QByteArray gzip = test::LoopbackHttpServer::gzipZeros(100'000);
        const QByteArray text = QByteArray("weather ").repeated(1000);
        row("gzip whole", gzip, qint64(1 << 20), 1, Status::Done, qint64(100'000));
        row("gzip a byte at a time", gzip, qint64(1 << 20), int(gzip.size()), Status::Done,
            qint64(100'000));
        row("zlib", zlibOf(text), qint64(1 << 20), 3, Status::Done, qint64(text.size()));
        row("exactly at the cap", gzip, qint64(100'000), 1, Status::Done, qint64(100'000));
        row("one byte past the cap", gzip, qint64(99'999), 1, Status::TooLarge, qint64(100'000));
        row("bomb stops at the cap", test::LoopbackHttpServer::gzipZeros(64 << 20), qint64(1 << 20),
            1, Status::TooLarge, qint64((1 << 20) + 1));
        row("cut short", gzip.left(gzip.size() / 2), qint64(1 << 20), 1, Status::More, qint64(-1));
        row("trailing bytes ignored", gzip + "junk", qint64(1 << 20), 1, Status::Done,
            qint64(100'000));
        row("not compressed", QByteArray("{\"plain\": true}"), qint64(1 << 20), 1, Status::Corrupt,
            qint64(-1));
        row("damaged inside", gzip.left(20) + QByteArray(40, '\xff') + gzip.mid(60),
            qint64(1 << 20), 1, Status::Corrupt, qint64(-1));
    }
    void feed() {
        QFETCH(QByteArray, input);
        QFETCH(qint64, cap);
        QFETCH(int, pieces);
        QFETCH(Status, status);
        QFETCH(qint64, outputSize);
        BodyInflater inflater(cap);
        QByteArray output;
        const qsizetype step = (input.size() + pieces - 1) / pieces;
        for (qsizetype at = 0; at < input.size(); at += step) {
            inflater.feed(QByteArrayView(input).sliced(at, std::min(step, input.size() - at)),
                          output);
        }
        QCOMPARE(inflater.status(), status);
        QVERIFY(output.size() <= cap + 1);
        if (outputSize >= 0) {
            QCOMPARE(output.size(), outputSize);
        }
        if (status == Status::Done && input.startsWith("\x1f\x8b")) {
            QCOMPARE(output.count('\0'), output.size());
        }
    }
};

QTEST_GUILESS_MAIN(TestBodyInflater)
#include "tst_bodyinflater.moc"
