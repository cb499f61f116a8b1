// Lens pictures for tiles: found again in a bounded cache for requests that differ by less than
// half a pixel, otherwise rendered on the pool once a tile's request has held still, and
// published on the main thread.
#include "ManualScheduler.h"
#include "faces/LiquidCache.h"
#include "faces/LiquidRenderQueue.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

Q_DECLARE_METATYPE(tw::LiquidRequest)

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

} // namespace

class TestLiquidRenderQueue : public QObject {
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
};

QTEST_GUILESS_MAIN(TestLiquidRenderQueue)
#include "tst_liquidrenderqueue.moc"
