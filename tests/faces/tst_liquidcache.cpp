// Lens pictures found again for requests that differ by less than half a pixel, and a bounded
// store.
#include "faces/LiquidCache.h"

#include <QTest>

Q_DECLARE_METATYPE(tw::LiquidRequest)

using namespace tw;

namespace {

LiquidRequest request(QRectF source, const QString& identity = QStringLiteral("screen-1|a.jpg")) {
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

} // namespace

class TestLiquidCache : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void equality_data();
    void equality();
    void store();
};

void TestLiquidCache::equality_data() {
    QTest::addColumn<LiquidRequest>("other");
    QTest::addColumn<bool>("equal");
    const QRectF source(100, 200, 408, 192);
    QTest::newRow("moved 0.4 px") << request(source.translated(0.4, -0.4)) << true;
    QTest::newRow("moved 0.6 px right") << request(source.translated(0.6, 0)) << false;
    QTest::newRow("0.4 px wider") << request(source.adjusted(0, 0, 0.4, 0)) << true;
    QTest::newRow("0.6 px taller") << request(source.adjusted(0, 0, 0, 0.6)) << false;
    QTest::newRow("another backdrop") << request(source, QStringLiteral("screen-1|b.jpg")) << false;
    LiquidRequest focused = request(source);
    focused.params.focused = true;
    QTest::newRow("focused") << focused << false;
}

void TestLiquidCache::equality() {
    QFETCH(LiquidRequest, other);
    QFETCH(bool, equal);
    const LiquidRequest base = request(QRectF(100, 200, 408, 192));
    QCOMPARE(base == other, equal);
    LiquidCache cache;
    cache.store(picture(7), base);
    QCOMPARE(cache.cached(other).isNull(), !equal);
}

void TestLiquidCache::store() {
    LiquidCache cache;
    for (int i = 0; i <= LiquidCache::capacity; ++i) {
        cache.store(picture(i), request(QRectF(i * 10, 0, 100, 100)));
    }
    QCOMPARE(cache.count(), LiquidCache::capacity);
    QVERIFY(cache.cached(request(QRectF(0, 0, 100, 100))).isNull());
    QCOMPARE(cache.cached(request(QRectF(10, 0, 100, 100))).pixelColor(0, 0).red(), 1);
    // An equal request replaces the picture, oldest or not, and drops nothing else.
    cache.store(picture(200), request(QRectF(10.3, 0, 100, 100)));
    QCOMPARE(cache.count(), LiquidCache::capacity);
    QCOMPARE(cache.cached(request(QRectF(10, 0, 100, 100))).pixelColor(0, 0).red(), 200);
    QCOMPARE(cache.cached(request(QRectF(20, 0, 100, 100))).pixelColor(0, 0).red(), 2);
}

QTEST_GUILESS_MAIN(TestLiquidCache)
#include "tst_liquidcache.moc"
