#include "TestRows.h"
#include "files/PhotoDecoder.h"
#include "files/PhotoFolder.h"

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using tw::test::row;

namespace {

// Left half red, right half blue: where the centre went shows how the picture was cut.
QImage halves(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.fillRect(QRect(0, 0, size.width() / 2, size.height()), Qt::red);
    painter.fillRect(QRect(size.width() / 2, 0, size.width() - size.width() / 2, size.height()),
                     Qt::blue);
    return image;
}

} // namespace

class TestPhotoDecoder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void decode_data() {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QSize>("original");
        QTest::addColumn<QSize>("wanted");
        row("large jpeg to a wide tile", "jpg", QSize(4000, 3000), QSize(340, 160));
        row("large png to a tall tile", "png", QSize(1200, 800), QSize(160, 340));
        row("small picture filled up", "png", QSize(40, 30), QSize(320, 320));
        row("exact size", "png", QSize(200, 100), QSize(200, 100));
    }
    void decode() {
        QFETCH(QString, format);
        QFETCH(QSize, original);
        QFETCH(QSize, wanted);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("picture.") + format);
        QVERIFY(halves(original).save(path, nullptr, 95));
        const PhotoDecoder::Result result = PhotoDecoder::decode(path, wanted);
        QVERIFY2(result.error.isEmpty(), qPrintable(result.error));
        QCOMPARE(result.image.size(), wanted);
        // Filled and centred: the left edge is red, the right blue, whatever was cut away.
        const QColor left = result.image.pixelColor(2, wanted.height() / 2);
        const QColor right = result.image.pixelColor(wanted.width() - 3, wanted.height() / 2);
        QVERIFY2(left.red() > 200 && left.blue() < 60, qPrintable(left.name()));
        QVERIFY2(right.blue() > 200 && right.red() < 60, qPrintable(right.name()));
    }

    void unreadable_data() {
        QTest::addColumn<QByteArray>("bytes");
        row("empty file", QByteArray());
        row("text named jpg", QByteArray("not a picture at all"));
        row("cut-off jpeg", QByteArray("\xff\xd8\xff\xe0\x00\x10JFIF\x00", 11));
    }
    void unreadable() {
        QFETCH(QByteArray, bytes);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("broken.jpg"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        const PhotoDecoder::Result result = PhotoDecoder::decode(path, QSize(100, 100));
        QVERIFY(result.image.isNull());
        QVERIFY(!result.error.isEmpty());
    }

    void folderScan() {
        QTemporaryDir dir;
        const QDir root(dir.path());
        QVERIFY(root.mkpath(QStringLiteral("trip/day 2")));
        QVERIFY(root.mkpath(QStringLiteral(".cache")));
        for (const char* name : {"img10.JPG", "img2.png", "notes.txt", "trip/day 2/a.jpeg",
                                 ".cache/thumb.png", ".hidden.png"}) {
            QFile file(root.filePath(QString::fromUtf8(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY(QFile::link(dir.path(), root.filePath(QStringLiteral("trip/loop"))));
        const QStringList suffixes = PhotoDecoder::suffixes();
        const PhotoFolder found = PhotoFolder::scan(dir.path(), suffixes);
        QVERIFY(found.exists);
        QCOMPARE(found.pictures, (QStringList{root.filePath(QStringLiteral("img2.png")),
                                              root.filePath(QStringLiteral("img10.JPG")),
                                              root.filePath(QStringLiteral("trip/day 2/a.jpeg"))}));
        QVERIFY(!found.truncated);
        const PhotoFolder capped = PhotoFolder::scan(dir.path(), suffixes, 2);
        QCOMPARE(capped.pictures.size(), 2);
        QVERIFY(capped.truncated);
        QVERIFY(!PhotoFolder::scan(root.filePath(QStringLiteral("absent")), suffixes).exists);
    }
};

QTEST_GUILESS_MAIN(TestPhotoDecoder)
#include "tst_photodecoder.moc"
