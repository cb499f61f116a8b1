// The desktop's picture behind the glass: fitted as the desktop fits it at the detail it has,
// read off the main thread from a real file, followed when it changes, put together across two
// displays, and a tile's glass drawn over it. Two displays side by side, the right one at 2x.
#include "TestRows.h"
#include "desktop/WallpaperBackdrop.h"
#include "faces/FaceContext.h"
#include "faces/TileRenderer.h"
#include "model/WidgetRegistry.h"
#include "platform/null/FixedDesktopPicture.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using tw::test::row;
using Fill = DesktopPicture::Fill;

namespace {

// A picture 200 × 100: its left half red, its right half blue.
QImage halves() {
    QImage image(200, 100, QImage::Format_RGB32);
    QPainter p(&image);
    p.fillRect(0, 0, 100, 100, Qt::red);
    p.fillRect(100, 0, 100, 100, Qt::blue);
    return image;
}

// Vertical stripes, black and white.
QImage stripes(QSize size, int width = 20) {
    QImage image(size, QImage::Format_RGB32);
    QPainter p(&image);
    for (int x = 0; x < size.width(); x += width) {
        p.fillRect(x, 0, width, size.height(), (x / width) % 2 ? Qt::white : Qt::black);
    }
    return image;
}

QString screenName() {
    return QGuiApplication::primaryScreen()->name();
}

const QRect kLeft(0, 0, 400, 300);
const QRect kRight(400, 0, 400, 300);

QColor colourAt(const GlassBackdrop& backdrop, QPointF point) {
    const QPointF at = backdrop.sourceIn(backdrop.sharp, QRectF(point, QSizeF())).topLeft();
    return backdrop.sharp.pixelColor(at.toPoint());
}

} // namespace

class tst_WallpaperBackdrop : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // A 200 × 100 red|blue picture on a 100 × 100 display, sampled at three points.
    void fitted_data() {
        QTest::addColumn<Fill>("fill");
        QTest::addColumn<QColor>("left");
        QTest::addColumn<QColor>("middleTop");
        QTest::addColumn<QColor>("right");
        const QColor red(Qt::red), blue(Qt::blue), black(Qt::black);
        row("zoom covers, cropped", Fill::zoom, red, red, blue);
        row("fit shows it whole, with bars", Fill::fit, red, black, blue);
        row("stretch squeezes", Fill::stretch, red, red, blue);
        row("center keeps its pixels", Fill::center, red, red, blue);
        row("tile starts at the corner", Fill::tile, red, red, red);
    }
    void fitted() {
        QFETCH(Fill, fill);
        const QImage out = WallpaperBackdrop::fitted(halves(), fill, QSize(100, 100));
        QCOMPARE(out.size(), QSize(100, 100));
        QTEST(out.pixelColor(2, 50), "left");
        QTEST(out.pixelColor(48, 2), "middleTop");
        QTEST(out.pixelColor(97, 50), "right");
    }

    void detailRatio_data() {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<Fill>("fill");
        QTest::addColumn<qreal>("devicePixelRatio");
        QTest::addColumn<qreal>("ratio");
        row("4K zoomed at 2x: all of it", QSize(3840, 2160), Fill::zoom, 2.0, 2.0);
        row("4K at 1x", QSize(3840, 2160), Fill::zoom, 1.0, 1.0);
        row("no more than the picture holds", QSize(2880, 1620), Fill::span, 2.0, 1.5);
        row("a small picture, at least 1", QSize(640, 480), Fill::fit, 2.0, 1.0);
        row("fit: the longer side's detail", QSize(3840, 1000), Fill::fit, 2.0, 2.0);
        row("centred: a pixel to a point", QSize(3840, 2160), Fill::center, 2.0, 1.0);
    }
    void detailRatio() {
        QFETCH(QSize, picture);
        QFETCH(Fill, fill);
        QFETCH(qreal, devicePixelRatio);
        QTEST(WallpaperBackdrop::detailRatio(picture, fill, QSize(1920, 1080), devicePixelRatio),
              "ratio");
    }

    // A panel across the two displays shows each display's picture on its side; a spanned
    // picture is one across both, not one on each.
    void acrossDisplays_data() {
        QTest::addColumn<QImage>("left");
        QTest::addColumn<QImage>("right");
        QTest::addColumn<Fill>("fill");
        QTest::addColumn<QColor>("leftSide");
        QTest::addColumn<QColor>("rightSide");
        QImage red(800, 600, QImage::Format_RGB32);
        red.fill(Qt::red);
        QImage blue(800, 600, QImage::Format_RGB32);
        blue.fill(Qt::blue);
        const QColor r(Qt::red);
        const QColor b(Qt::blue);
        row("two pictures", red, blue, Fill::zoom, r, b);
        // 200 × 100, red|blue: zoomed on each display its middle shows, blue then red.
        row("one picture on each", halves(), halves(), Fill::zoom, b, r);
        row("one picture spanned", halves(), halves(), Fill::span, r, b);
    }
    void acrossDisplays() {
        QCOMPARE(QGuiApplication::screens().size(), 2);
        QFETCH(QImage, left);
        QFETCH(QImage, right);
        QFETCH(Fill, fill);
        QTemporaryDir dir;
        const QString leftFile = dir.filePath(QStringLiteral("left.png"));
        const QString rightFile = dir.filePath(QStringLiteral("right.png"));
        QVERIFY(left.save(leftFile) && right.save(rightFile));
        FixedDesktopPicture picture;
        picture.setSetting(QStringLiteral("left"), {leftFile, fill, QStringLiteral("l")});
        picture.setSetting(QStringLiteral("right"), {rightFile, fill, QStringLiteral("r")});
        WallpaperBackdrop backdrop(&picture);
        const QRect onRight(500, 100, 100, 100);
        const QRect across(300, 100, 200, 100);
        QTRY_VERIFY(backdrop.behind(onRight) && backdrop.behind(QRect(100, 100, 100, 100)));

        const GlassBackdrop both = *backdrop.behind(across);
        QCOMPARE(both.panel.size(), QSizeF(across.size()));
        QTEST(colourAt(both, both.panel.topLeft() + QPointF(50, 50)), "leftSide");
        QTEST(colourAt(both, both.panel.topLeft() + QPointF(150, 50)), "rightSide");
        if (left.width() >= 800) {
            // Pictures with the detail for it: the 2x display's at its device pixels, and the
            // two put together at the finer one's.
            QCOMPARE(backdrop.behind(onRight)->sharp.size(), QSize(800, 600));
            QCOMPARE(both.sharp.width() / both.display.width(), 2.0);
        }
    }

    // A real file, read off the main thread; a change of picture is followed; an unreadable
    // one leaves the display without a backdrop, and says so once.
    void readsFollowsAndFails() {
        QTemporaryDir dir;
        const QString good = dir.filePath(QStringLiteral("stripes.png"));
        const QSize display = QGuiApplication::primaryScreen()->geometry().size();
        QVERIFY(stripes(display).save(good));
        const QString bad = dir.filePath(QStringLiteral("broken.jpg"));
        QFile file(bad);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("\xff\xd8 not a picture") > 0);
        file.close();

        FixedDesktopPicture picture;
        WallpaperBackdrop backdrop(&picture);
        QSignalSpy changed(&backdrop, &WallpaperBackdrop::changed);
        const QRect panel(100, 100, 248, 248);
        QVERIFY(!backdrop.behind(panel));

        picture.setSetting(screenName(), {good, Fill::zoom, QStringLiteral("a")});
        QTRY_VERIFY(backdrop.behind(panel).has_value());
        const GlassBackdrop first = *backdrop.behind(panel);
        QCOMPARE(first.panel,
                 QRectF(panel.translated(-QGuiApplication::primaryScreen()->geometry().topLeft())));
        QCOMPARE(first.sharp.size(), display);
        // Blurred, the stripes keep their mean but lose their contrast.
        const QColor soft = first.frosted.pixelColor(first.frosted.width() / 2, 5);
        QVERIFY2(soft.lightness() > 60 && soft.lightness() < 195, qPrintable(soft.name()));

        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("broken.jpg is not readable")));
        picture.setSetting(screenName(), {bad, Fill::zoom, QStringLiteral("b")});
        QTRY_VERIFY(!backdrop.behind(panel).has_value());
        QVERIFY(changed.size() >= 2);
    }

    // Over the stripes, frosted glass lets them show softened inside the tile; the margin is
    // the sharp picture where nothing blends the window with the desktop, and clear elsewhere.
    void glassOverThePicture_data() {
        QTest::addColumn<bool>("opaqueMargin");
        row("without a compositor", true);
        row("with a compositor", false);
    }
    void glassOverThePicture() {
        QFETCH(bool, opaqueMargin);
        const QImage sharp = stripes(QSize(800, 600), 80);
        GlassBackdrop backdrop{.sharp = sharp,
                               .frosted = WallpaperBackdrop::blurred(sharp, 8, 3),
                               .clear = WallpaperBackdrop::blurred(sharp, 3, 2),
                               .display = QSizeF(800, 600),
                               .panel = QRectF(100, 100, 248, 248),
                               .identity = QStringLiteral("stripes")};
        WidgetRegistry registry;
        FaceContext context = FaceContext::forKind(
            registry.definition(QStringLiteral("clock"))->metadata, WidgetSize::large);
        context.theme = Theme::defaultTheme();
        TileRenderer renderer;
        const QImage out =
            renderer.panelBackground(QSizeF(204, 204), context, backdrop, opaqueMargin);
        QCOMPARE(out.size(), QSize(248, 248));
        // In the margin's corner: the sharp picture, or nothing.
        QCOMPARE(qAlpha(out.pixel(1, 1)), opaqueMargin ? 255 : 0);
        // Inside the tile, across a few stripes: varying, but far less than black to white.
        int low = 255;
        int high = 0;
        for (int x = 30; x < 218; ++x) {
            const int value = qGray(out.pixel(x, 124));
            low = std::min(low, value);
            high = std::max(high, value);
        }
        QVERIFY2(high - low > 2 && high - low < 128,
                 qPrintable(QStringLiteral("%1..%2").arg(low).arg(high)));
        // The rounded corner is antialiased: some pixel on its diagonal is part-way.
        bool partWay = false;
        for (int i = 22; i < 30; ++i) {
            const int alpha = qAlpha(out.pixel(i, i));
            partWay = partWay || (!opaqueMargin && alpha > 0 && alpha < 255);
        }
        QVERIFY(opaqueMargin || partWay);
    }
};

int main(int argc, char** argv) {
    QTemporaryDir dir;
    QFile config(dir.filePath(QStringLiteral("screens.json")));
    if (!config.open(QIODevice::WriteOnly)) {
        return 1;
    }
    config.write(R"({"screens": [
        {"name": "left", "x": 0, "y": 0, "width": 400, "height": 300, "dpr": 1},
        {"name": "right", "x": 400, "y": 0, "width": 400, "height": 300, "dpr": 2}]})");
    config.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(config.fileName()));
    QGuiApplication app(argc, argv);
    tst_WallpaperBackdrop test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_wallpaperbackdrop.moc"
