// Lens pictures for tiles: found again in a bounded cache for requests that differ by less than
// half a pixel, otherwise rendered on the pool once a tile's request has held still, and
// published on the main thread; the picture itself: its size limit, blur, shape, the flat middle
// worked out by hand, and whole pictures over a striped backdrop compared with reviewed copies.
#include "ManualScheduler.h"
#include "faces/LiquidCache.h"
#include "faces/LiquidGlassRenderer.h"
#include "faces/LiquidRenderQueue.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(tw::LiquidRequest)
Q_DECLARE_METATYPE(tw::LiquidGlassParams)

using namespace std::chrono_literals;
using namespace tw;

namespace {

const QString kTile = QStringLiteral("tile-1");

LiquidRequest request(QSizeF points, double x = 0) {
    LiquidRequest r;
    r.identity = QStringLiteral("screen-1|a.jpg");
    r.backdrop = QImage(64, 64, QImage::Format_RGB32);
    r.backdrop.fill(Qt::darkCyan);
    r.source = QRectF(x, 0, points.width(), points.height());
    r.params.size = points;
    r.params.scale = 1;
    return r;
}

// A request for `source` on the backdrop `identity`.
LiquidRequest keyed(QRectF source, const QString& identity = QStringLiteral("screen-1|a.jpg")) {
    LiquidRequest r;
    r.identity = identity;
    r.source = source;
    r.params.size = QSizeF(204, 96);
    return r;
}

QImage picture(int marker) {
    QImage image(2, 2, QImage::Format_RGBA8888_Premultiplied);
    image.fill(QColor(marker, 0, 0));
    return image;
}

struct Fixture {
    LiquidCache cache;
    test::ManualScheduler scheduler;
    LiquidRenderQueue queue{cache, scheduler};
    QSignalSpy spy{&queue, &LiquidRenderQueue::rendered};

    QSize publishedSize() const { return spy.last().at(1).value<QImage>().size(); }
};

// Diagonal stripes of four colours, 12 pixels wide, with a translucent one.
QImage stripes(QSize size) {
    const QRgb colours[] = {qRgb(220, 60, 40), qRgb(30, 140, 220), qRgb(250, 220, 60),
                            qPremultiply(qRgba(20, 180, 90, 160))};
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            line[x] = colours[((x + y) / 12) % 4];
        }
    }
    return image;
}

LiquidGlassParams params(QSizeF size, double scale, double frost = 0) {
    LiquidGlassParams p;
    p.size = size;
    p.scale = scale;
    p.frost = frost;
    return p;
}

} // namespace

class TestLiquid : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void newerRequestReplacesOlder() {
        Fixture f;
        QVERIFY(!f.queue.request(kTile, request(QSizeF(20, 10))));
        f.scheduler.advance(30ms);
        f.queue.request(kTile, request(QSizeF(30, 10)));
        f.scheduler.advance(59ms);
        QCOMPARE(f.scheduler.pendingCount(), 1);
        f.scheduler.advance(1ms);
        // A render may finish before the queue looks at it, so the picture may come at once.
        QTRY_COMPARE(f.spy.count(), 1);
        QCOMPARE(f.publishedSize(), QSize(30, 10));
        QVERIFY(!f.cache.cached(request(QSizeF(30, 10))).isNull());

        // A change while a render is under way drops its picture; the pool is held busy meanwhile.
        QSemaphore release;
        f.queue.pool().setMaxThreadCount(1);
        f.queue.pool().start([&release] { release.acquire(); });
        f.queue.request(kTile, request(QSizeF(40, 10)));
        f.scheduler.advance(60ms);
        f.queue.request(kTile, request(QSizeF(50, 10)));
        f.scheduler.advance(60ms);
        release.release();
        QTRY_VERIFY(!f.queue.isPending(kTile));
        f.queue.pool().waitForDone();
        QCoreApplication::processEvents();
        QCOMPARE(f.spy.count(), 2);
        QCOMPARE(f.publishedSize(), QSize(50, 10));
        QVERIFY(f.cache.cached(request(QSizeF(40, 10))).isNull());
    }

    void equalRequestKeepsItsPlace() {
        Fixture f;
        f.queue.request(kTile, request(QSizeF(20, 10)));
        f.scheduler.advance(40ms);
        f.queue.request(kTile, request(QSizeF(20, 10), 0.4));
        f.scheduler.advance(20ms);
        QCOMPARE(f.scheduler.pendingCount(), 0);
        QTRY_COMPARE(f.spy.count(), 1);
        QCOMPARE(f.publishedSize(), QSize(20, 10));

        // Now cached: the picture comes before the call returns, for another tile too.
        QVERIFY(f.queue.request(QStringLiteral("tile-2"), request(QSizeF(20, 10), -0.4)));
        QCOMPARE(f.spy.count(), 2);
        QCOMPARE(f.spy.last().at(0).toString(), QStringLiteral("tile-2"));
        QVERIFY(!f.queue.isPending(QStringLiteral("tile-2")));
    }

    void cancelledOrOversizedPublishNothing() {
        Fixture f;
        f.queue.request(kTile, request(QSizeF(20, 10)));
        f.queue.cancel(kTile);
        QCOMPARE(f.scheduler.pendingCount(), 0);
        QVERIFY(!f.queue.isPending(kTile));

        f.queue.request(kTile, request(QSizeF(8000, 5000)));
        f.scheduler.advance(60ms);
        QTRY_VERIFY(!f.queue.isPending(kTile));
        QCOMPARE(f.spy.count(), 0);
    }

    void equality_data() {
        QTest::addColumn<LiquidRequest>("other");
        QTest::addColumn<bool>("equal");
        const QRectF source(100, 200, 408, 192);
        QTest::newRow("moved 0.4 px") << keyed(source.translated(0.4, -0.4)) << true;
        QTest::newRow("moved 0.6 px right") << keyed(source.translated(0.6, 0)) << false;
        QTest::newRow("0.4 px wider") << keyed(source.adjusted(0, 0, 0.4, 0)) << true;
        QTest::newRow("0.6 px taller") << keyed(source.adjusted(0, 0, 0, 0.6)) << false;
        QTest::newRow("another backdrop")
            << keyed(source, QStringLiteral("screen-1|b.jpg")) << false;
        LiquidRequest focused = keyed(source);
        focused.params.focused = true;
        QTest::newRow("focused") << focused << false;
    }

    void equality() {
        QFETCH(LiquidRequest, other);
        QFETCH(bool, equal);
        const LiquidRequest base = keyed(QRectF(100, 200, 408, 192));
        QCOMPARE(base == other, equal);
        LiquidCache cache;
        cache.store(picture(7), base);
        QCOMPARE(cache.cached(other).isNull(), !equal);
    }

    void store() {
        LiquidCache cache;
        for (int i = 0; i <= LiquidCache::capacity; ++i) {
            cache.store(picture(i), keyed(QRectF(i * 10, 0, 100, 100)));
        }
        QCOMPARE(cache.count(), LiquidCache::capacity);
        QVERIFY(cache.cached(keyed(QRectF(0, 0, 100, 100))).isNull());
        QCOMPARE(cache.cached(keyed(QRectF(10, 0, 100, 100))).pixelColor(0, 0).red(), 1);
        // An equal request replaces the picture, oldest or not, and drops nothing else.
        cache.store(picture(200), keyed(QRectF(10.3, 0, 100, 100)));
        QCOMPARE(cache.count(), LiquidCache::capacity);
        QCOMPARE(cache.cached(keyed(QRectF(10, 0, 100, 100))).pixelColor(0, 0).red(), 200);
        QCOMPARE(cache.cached(keyed(QRectF(20, 0, 100, 100))).pixelColor(0, 0).red(), 2);
    }

    void pixelSize_data() {
        QTest::addColumn<QSizeF>("points");
        QTest::addColumn<double>("scale");
        QTest::addColumn<QSize>("expected");
        QTest::newRow("halves round away from zero") << QSizeF(10.25, 4.75) << 2.0 << QSize(21, 10);
        QTest::newRow("nothing is one pixel") << QSizeF(0, 0) << 2.0 << QSize(1, 1);
        QTest::newRow("39,999,999 pixels") << QSizeF(3, 13333333) << 1.0 << QSize(3, 13333333);
        QTest::newRow("40,000,000 pixels") << QSizeF(5000, 4000) << 2.0 << QSize();
        QTest::newRow("no scale") << QSizeF(100, 100) << 0.0 << QSize();
        QTest::newRow("not a number")
            << QSizeF(std::numeric_limits<double>::quiet_NaN(), 10) << 2.0 << QSize();
        QTest::newRow("beyond any int") << QSizeF(1e300, 1e-300) << 2.0 << QSize();
    }

    void pixelSize() {
        QFETCH(QSizeF, points);
        QFETCH(double, scale);
        QFETCH(QSize, expected);
        QCOMPARE(LiquidGlassRenderer::pixelSize(params(points, scale)), expected);
        if (expected.isEmpty()) {
            QVERIFY(LiquidGlassRenderer::render(stripes(QSize(8, 8)), QRectF(0, 0, 8, 8),
                                                params(points, scale))
                        .isNull());
        }
    }

    void setUp_data() {
        QTest::addColumn<QSizeF>("points");
        QTest::addColumn<double>("scale");
        QTest::addColumn<double>("frost");
        QTest::addColumn<double>("cornerRadius");
        QTest::addColumn<double>("sigma");
        QTest::addColumn<int>("marginPoints");
        QTest::addColumn<double>("radius");
        QTest::addColumn<double>("bevel");
        QTest::addColumn<double>("amplitude");
        // A blur of 0.3 is not above 0.3: no Gaussian pass at all.
        QTest::newRow("clear at 1x, 40 wide: bevel at its floor")
            << QSizeF(40, 96) << 1.0 << 0.0 << 18.0 << 0.0 << 3 << 18.0 << 18.0 << 24.3;
        QTest::newRow("clear at 2x, 200 wide: bevel at its ceiling")
            << QSizeF(200, 200) << 2.0 << 0.0 << 18.0 << 0.3 << 3 << 18.0 << 46.0 << 62.1;
        QTest::newRow("half frosted at 1x, bevel in between")
            << QSizeF(300, 100) << 1.0 << 0.5 << 18.0 << 1.9 << 12 << 18.0 << 32.0 << 43.2;
        QTest::newRow("frost held to 1, radius past half the short side: a capsule")
            << QSizeF(200, 60) << 2.0 << 4.0 << 45.0 << 7.3 << 21 << 30.0 << 19.2 << 25.92;
    }

    void setUp() {
        QFETCH(QSizeF, points);
        QFETCH(double, scale);
        QFETCH(double, frost);
        QFETCH(double, cornerRadius);
        LiquidGlassParams p = params(points, scale, frost);
        p.cornerRadius = cornerRadius;
        QTEST(LiquidGlassRenderer::blurSigma(p), "sigma");
        QTEST(LiquidGlassRenderer::marginPoints(frost), "marginPoints");
        const LiquidGlassRenderer::Shape shape = LiquidGlassRenderer::shape(p);
        QTEST(shape.cornerRadius, "radius");
        QTEST(shape.bevel, "bevel");
        QTEST(shape.amplitude, "amplitude");
    }

    void flatMiddle_data() {
        QTest::addColumn<bool>("withBackdrop");
        QTest::addColumn<bool>("lightGlass");
        QTest::addColumn<double>("frost");
        QTest::addColumn<bool>("focused");
        QTest::addColumn<QSizeF>("points");
        QTest::addColumn<double>("scale");
        QTest::addColumn<QList<int>>("rgba");
        // Worked out from the formula: the backdrop (60, 120, 180) saturated by 1.22 is (49, 122,
        // 195); the middle pixel (100, 100) of a 200-point tile at 1x has strength 0, no rim and a
        // sheen of (1 - 100.5 / 200) × 0.045.
        const QSizeF tile(200, 200);
        QTest::newRow("dark and clear")
            << true << false << 0.0 << false << tile << 1.0 << QList<int>{50, 116, 182, 255};
        QTest::newRow("light, frosted, focused")
            << true << true << 1.0 << true << tile << 1.0 << QList<int>{96, 152, 208, 255};
        QTest::newRow("no backdrop, dark")
            << false << false << 0.5 << false << tile << 1.0 << QList<int>{5, 5, 5, 68};
        QTest::newRow("no backdrop, light, focused")
            << false << true << 0.0 << true << tile << 1.0 << QList<int>{48, 48, 48, 48};
        // So far from every edge that the normal's weights vanish: still the same plain glass.
        QTest::newRow("no backdrop, a huge tile at a tiny scale")
            << false << false << 0.5 << false << QSizeF(2e8, 2e8) << 1e-6
            << QList<int>{5, 5, 5, 68};
    }

    void flatMiddle() {
        QFETCH(bool, withBackdrop);
        QFETCH(bool, lightGlass);
        QFETCH(double, frost);
        QFETCH(bool, focused);
        QFETCH(QSizeF, points);
        QFETCH(double, scale);
        QFETCH(QList<int>, rgba);
        QImage backdrop;
        if (withBackdrop) {
            backdrop = QImage(300, 300, QImage::Format_RGB32);
            backdrop.fill(qRgb(60, 120, 180));
        }
        LiquidGlassParams p = params(points, scale, frost);
        p.lightGlass = lightGlass;
        p.focused = focused;
        const QImage image = LiquidGlassRenderer::render(backdrop, QRectF(50, 50, 200, 200), p);
        QCOMPARE(image.size(), QSize(200, 200));
        const uchar* px = image.constScanLine(100) + 100 * 4;
        QCOMPARE((QList<int>{px[0], px[1], px[2], px[3]}), rgba);
    }

    void golden_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("withBackdrop");
        QTest::addColumn<QRectF>("source");
        QTest::addColumn<LiquidGlassParams>("params");
        LiquidGlassParams frosted = params(QSizeF(100, 70), 2, 0.3);
        frosted.cornerRadius = 18;
        LiquidGlassParams light = params(QSizeF(100, 70), 2, 0);
        light.lightGlass = true;
        light.focused = true;
        LiquidGlassParams capsule = params(QSizeF(90, 40), 2, 0.6);
        capsule.cornerRadius = 40;
        QTest::newRow("dark frosted")
            << QStringLiteral("dark-frosted") << true << QRectF(120, 80, 200, 140) << frosted;
        // Past the backdrop's lower left corner, whose edge pixels repeat outwards.
        QTest::newRow("light over the edge")
            << QStringLiteral("light-over-the-edge") << true << QRectF(-40, 220, 200, 140) << light;
        QTest::newRow("no backdrop capsule")
            << QStringLiteral("no-backdrop-capsule") << false << QRectF() << capsule;
    }

    void golden() {
        QFETCH(QString, name);
        QFETCH(bool, withBackdrop);
        QFETCH(QRectF, source);
        QFETCH(LiquidGlassParams, params);
        const QImage image = LiquidGlassRenderer::render(
            withBackdrop ? stripes(QSize(480, 320)) : QImage(), source, params);
        const QString path =
            QStringLiteral(TW_GOLDEN_DIR "/liquid-") + name + QStringLiteral(".png");
        if (qEnvironmentVariableIsSet("TW_UPDATE_GOLDEN")) {
            QVERIFY(image.save(path));
            return;
        }
        const QImage expected = QImage(path).convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        QCOMPARE(image.size(), expected.size());
        // A channel may move by a little with floating-point order, never by a visible step.
        for (int y = 0; y < image.height(); ++y) {
            const uchar* a = image.constScanLine(y);
            const uchar* b = expected.constScanLine(y);
            for (int i = 0; i < image.width() * 4; ++i) {
                if (std::abs(a[i] - b[i]) > 2) {
                    QFAIL(qPrintable(QStringLiteral("pixel (%1, %2) channel %3: %4, expected %5")
                                         .arg(i / 4)
                                         .arg(y)
                                         .arg(i % 4)
                                         .arg(a[i])
                                         .arg(b[i])));
                }
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestLiquid)
#include "tst_liquid.moc"
