// The desktop's picture as thumbnails: read from a real file at the size asked for, kept by size
// until the desktop says its picture changed, and the palette's theme read through them.
#include "desktop/DesktopWallpaper.h"
#include "platform/null/FixedDesktopPicture.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;

namespace {

QString primary() {
    return QGuiApplication::primaryScreen()->name();
}

bool write(const QString& path, QSize size, QColor colour) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image.save(path);
}

} // namespace

class tst_DesktopWallpaper : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void thumbnailsFollowThePicture() {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("picture.png"));
        QVERIFY(write(file, QSize(800, 400), QColor(40, 90, 230)));
        FixedDesktopPicture picture;
        DesktopWallpaper wallpaper(&picture);
        QVERIFY(wallpaper.thumbnail(400).isNull());
        QVERIFY(!wallpaper.currentTheme());

        QSignalSpy changed(&wallpaper, &DesktopWallpaper::changed);
        picture.setSetting(primary(), {file, DesktopPicture::Fill::zoom, QStringLiteral("a")});
        QCOMPARE(changed.size(), 1);
        const QImage large = wallpaper.thumbnail(400);
        QCOMPARE(large.size(), QSize(400, 200));
        QCOMPARE(wallpaper.path(), file);
        QCOMPARE(wallpaper.thumbnail(50).size(), QSize(50, 25));
        // Never larger than the picture itself.
        QCOMPARE(wallpaper.thumbnail(2000).size(), QSize(800, 400));
        const std::optional<Theme> blue = wallpaper.currentTheme();
        QVERIFY(blue && blue->accent.blue > blue->accent.red);

        // The file changes under the same name: kept until the desktop says so.
        QVERIFY(write(file, QSize(600, 600), QColor(230, 40, 40)));
        QCOMPARE(wallpaper.thumbnail(400).cacheKey(), large.cacheKey());
        picture.setSetting(primary(), {file, DesktopPicture::Fill::zoom, QStringLiteral("b")});
        QVERIFY(wallpaper.path().isEmpty());
        QCOMPARE(wallpaper.thumbnail(400).size(), QSize(400, 400));
        const std::optional<Theme> red = wallpaper.currentTheme();
        QVERIFY(red && red->accent.red > red->accent.blue);
    }
};

QTEST_MAIN(tst_DesktopWallpaper)
#include "tst_desktopwallpaper.moc"
