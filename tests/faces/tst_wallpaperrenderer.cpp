#include "faces/WallpaperRenderer.h"
#include "platform/DesktopPictureSetter.h"

#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;

namespace {

// Records what it is asked to show; takes as many displays as it is told to.
class RecordingSetter final : public DesktopPictureSetter {
public:
    QList<Target> displays;
    int takes = 0;
    QStringList shown;

    QList<Target> targets() const override { return displays; }
    int show(const QList<Target>& targets, const QStringList& files) override {
        Q_ASSERT(targets.size() == files.size());
        shown = files;
        return takes;
    }
};

} // namespace

class tst_WallpaperRenderer : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Each display gets the picture at its own pixel size; displays of one size share a file.
    void applyEverywhere_data() {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QList<QRect>>("displays");
        QTest::addColumn<int>("takes");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("names"); // the names handed to the desktop, in order
        const QRect wide(0, 0, 320, 200);
        const QRect tall(320, 0, 120, 240);
        QTest::newRow("two sizes") << "dunes" << QList<QRect>{wide, tall} << 2 << 2
                                   << "dunes-320x200.png dunes-120x240.png";
        QTest::newRow("twins share a file")
            << "aurora" << QList<QRect>{wide, wide.translated(320, 0)} << 2 << 2
            << "aurora-320x200.png aurora-320x200.png";
        QTest::newRow("the desktop takes fewer") << "meadow" << QList<QRect>{wide, tall} << 1 << 1
                                                 << "meadow-320x200.png meadow-120x240.png";
        QTest::newRow("no display") << "dawn" << QList<QRect>{} << 0 << 0 << "";
        QTest::newRow("unknown id") << "sunset" << QList<QRect>{wide} << 1 << -1 << "";
    }
    void applyEverywhere() {
        QFETCH(QString, id);
        QFETCH(QList<QRect>, displays);
        QFETCH(int, takes);
        QFETCH(QString, names);
        const QStringList files = names.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        RecordingSetter setter;
        for (const QRect& area : displays) {
            setter.displays.append({QStringLiteral("OUT-%1").arg(setter.displays.size()), area});
        }
        setter.takes = takes;
        const QTemporaryDir data;
        const QString folder = data.filePath(QStringLiteral("Wallpapers"));
        QTEST(WallpaperRenderer::applyEverywhere(id, setter, folder), "count");
        QCOMPARE(setter.shown.size(), files.size());
        for (qsizetype i = 0; i < files.size(); ++i) {
            QCOMPARE(setter.shown[i], QDir(folder).filePath(files[i]));
            QCOMPARE(QImage(setter.shown[i]).size(), displays[i].size());
        }
    }

    // Every built-in covers the picture, is more than one colour, and has a unique id; a moving
    // one changes within its loop and is back at its still picture after a whole period, a still
    // one ignores the time.
    void everyWallpaperIsDrawn() {
        QSet<QString> ids;
        int moving = 0;
        for (const Wallpaper& wallpaper : Wallpaper::all()) {
            ids.insert(wallpaper.id);
            const QImage picture = WallpaperRenderer::render(wallpaper, QSize(64, 40));
            QCOMPARE(picture.size(), QSize(64, 40));
            QVERIFY2(picture.pixel(0, 0) != picture.pixel(63, 39), qPrintable(wallpaper.id));
            const QImage later = WallpaperRenderer::render(
                wallpaper, QSize(64, 40), wallpaper.moves() ? wallpaper.period / 3 : 17);
            QVERIFY2((later != picture) == wallpaper.moves(), qPrintable(wallpaper.id));
            if (wallpaper.moves()) {
                ++moving;
                QCOMPARE(WallpaperRenderer::render(wallpaper, QSize(64, 40), wallpaper.period),
                         picture);
            }
        }
        QCOMPARE(moving, 3);
        QCOMPARE(ids.size(), Wallpaper::all().size());
        QVERIFY(WallpaperRenderer::render(Wallpaper::all().first(), QSize(0, 10)).isNull());
        QVERIFY(WallpaperRenderer::render(Wallpaper::all().first(), QSize(20000, 20000)).isNull());
    }
};

QTEST_MAIN(tst_WallpaperRenderer)
#include "tst_wallpaperrenderer.moc"
