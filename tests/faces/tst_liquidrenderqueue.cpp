// Lens pictures for tiles: at once from the cache, otherwise once a tile's request has held still,
// rendered on the pool and published on the main thread.
#include "ManualScheduler.h"
#include "faces/LiquidCache.h"
#include "faces/LiquidRenderQueue.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

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
};

QTEST_GUILESS_MAIN(TestLiquidRenderQueue)
#include "tst_liquidrenderqueue.moc"
