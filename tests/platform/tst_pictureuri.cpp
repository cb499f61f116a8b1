#include "platform/linux/PictureUri.h"

#include <QTest>

using namespace tw;

class tst_PictureUri : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void localFile_data() {
        QTest::addColumn<QString>("uri");
        QTest::addColumn<QString>("expected");
        QTest::newRow("plain path") << "/home/a/b.jpg"
                                    << "/home/a/b.jpg";
        QTest::newRow("escaped space") << "file:///home/a/my%20picture.jpg"
                                       << "/home/a/my picture.jpg";
        QTest::newRow("escaped UTF-8")
            << "file:///p/caf%C3%A9.png" << QString::fromUtf8("/p/café.png");
        QTest::newRow("escaped hash and percent") << "file:///p/a%23b%25c.png"
                                                  << "/p/a#b%c.png";
        QTest::newRow("localhost") << "file://localhost/p/a.png"
                                   << "/p/a.png";
        QTest::newRow("upper-case scheme, spaces around") << "  FILE:///p/a.png\n"
                                                          << "/p/a.png";
        QTest::newRow("another host") << "file://server/p/a.png" << QString();
        QTest::newRow("another scheme") << "resource:///org/gnome/a.png" << QString();
        QTest::newRow("relative") << "pictures/a.png" << QString();
        QTest::newRow("encoded NUL") << "file:///p/a%00.png" << QString();
        QTest::newRow("empty") << "" << QString();
        QTest::newRow("scheme alone") << "file://" << QString();
    }
    void localFile() {
        QFETCH(QString, uri);
        QFETCH(QString, expected);
        QCOMPARE(PictureUri::localFile(uri), expected);
    }
};

QTEST_GUILESS_MAIN(tst_PictureUri)
#include "tst_pictureuri.moc"
