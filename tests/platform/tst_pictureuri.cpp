#include "TestRows.h"
#include "platform/linux/PictureUri.h"

#include <QTest>

using namespace tw;

class tst_PictureUri : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void localFile_data() {
        QTest::addColumn<QString>("uri");
        QTest::addColumn<QString>("expected");
        using test::row;
        row("plain path", "/home/a/b.jpg", "/home/a/b.jpg");
        row("escaped space", "file:///home/a/my%20picture.jpg", "/home/a/my picture.jpg");
        row("escaped UTF-8", "file:///p/caf%C3%A9.png", "/p/café.png");
        row("escaped hash and percent", "file:///p/a%23b%25c.png", "/p/a#b%c.png");
        row("localhost", "file://localhost/p/a.png", "/p/a.png");
        row("upper-case scheme, spaces around", "  FILE:///p/a.png\n", "/p/a.png");
        row("another host", "file://server/p/a.png", QString());
        row("another scheme", "resource:///org/gnome/a.png", QString());
        row("relative", "pictures/a.png", QString());
        row("encoded NUL", "file:///p/a%00.png", QString());
        row("empty", "", QString());
        row("scheme alone", "file://", QString());
    }
    void localFile() {
        QFETCH(QString, uri);
        QTEST(PictureUri::localFile(uri), "expected");
    }
};

QTEST_GUILESS_MAIN(tst_PictureUri)
#include "tst_pictureuri.moc"
