// The desktop's picture behind the glass: fitted as the desktop fits it, read off the main
// thread from a real file, followed when it changes, and a tile's glass drawn over it.
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
        QTest::newRow("zoom covers, cropped") << Fill::zoom << red << red << blue;
        QTest::newRow("fit shows it whole, with bars") << Fill::fit << red << black << blue;
        QTest::newRow("stretch squeezes") << Fill::stretch << red << red << blue;
        QTest::newRow("center keeps its pixels") << Fill::center << red << red << blue;
        QTest::newRow("tile starts at the corner") << Fill::tile << red << red << red;
    }
    void fitted() {
        QFETCH(Fill, fill);
        const QImage out = WallpaperBackdrop::fitted(halves(), fill, QSize(100, 100));
        QCOMPARE(out.size(), QSize(100, 100));
        QFETCH(QColor, left);
        QFETCH(QColor, middleTop);
        QFETCH(QColor, right);
        QCOMPARE(out.pixelColor(2, 50), left);
        QCOMPARE(out.pixelColor(48, 2), middleTop);
        QCOMPARE(out.pixelColor(97, 50), right);
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
        QTest::newRow("without a compositor") << true;
        QTest::newRow("with a compositor") << false;
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

QTEST_MAIN(tst_WallpaperBackdrop)
#include "tst_wallpaperbackdrop.moc"
