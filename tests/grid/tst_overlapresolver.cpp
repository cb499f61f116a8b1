#include "grid/OverlapResolver.h"

#include <QTest>

using Rects = QList<QRectF>;
using Bounds = std::optional<QRectF>;
Q_DECLARE_METATYPE(Bounds)

class TestOverlapResolver : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void resolve_data() {
        QTest::addColumn<QRectF>("rect");
        QTest::addColumn<Rects>("avoiding");
        QTest::addColumn<Bounds>("bounds");
        QTest::addColumn<QRectF>("expected");
        const Bounds screen = QRectF(-1000, -1000, 3000, 3000);
        const QRectF r(100, 100, 100, 100);
        QTest::newRow("free stays") << r << Rects{{300, 100, 100, 100}} << screen << r;
        QTest::newRow("touching is not overlap") << r << Rects{{200, 100, 100, 100}} << screen << r;
        QTest::newRow("0.5 deep is not overlap")
            << r << Rects{{199.5, 100, 100, 100}} << screen << r;
        QTest::newRow("0.5 deep one way only") << r << Rects{{150, 199.5, 100, 100}} << screen << r;
        QTest::newRow("0.6 deep slides left")
            << r << Rects{{199.4, 100, 100, 100}} << screen << QRectF(83.4, 100, 100, 100);
        // 30 deep: the push (30 + 16) is nearer than the second ring (48).
        QTest::newRow("nearest push is right")
            << r << Rects{{30, 100, 100, 100}} << screen << QRectF(146, 100, 100, 100);
        QTest::newRow("nearest push is up")
            << r << Rects{{100, 30, 100, 100}} << screen << QRectF(100, 146, 100, 100);
        // 20 deep: the first ring (24) is nearer than the push (20 + 16).
        QTest::newRow("first ring beats the push")
            << r << Rects{{20, 100, 100, 100}} << screen << QRectF(124, 100, 100, 100);
        // Exactly on top of another: all four pushes are 116 away; the order decides.
        QTest::newRow("tie: left first") << r << Rects{r} << screen << QRectF(-16, 100, 100, 100);
        QTest::newRow("tie: right when left is off screen")
            << r << Rects{r} << Bounds(QRectF(0, -1000, 3000, 3000)) << QRectF(216, 100, 100, 100);
        QTest::newRow("tie: down when left and right are off screen")
            << r << Rects{r} << Bounds(QRectF(0, -1000, 300, 3000)) << QRectF(100, -16, 100, 100);
        QTest::newRow("tie: up when only up is left")
            << r << Rects{r} << Bounds(QRectF(0, 0, 300, 3000)) << QRectF(100, 216, 100, 100);
        QTest::newRow("edges may pass by 0.5")
            << r << Rects{r} << Bounds(QRectF(-15.5, 0, 200, 300)) << QRectF(-16, 100, 100, 100);
        // Pushes left and right are blocked by the screen and the second tile; a ring step of
        // 24 upward-right is nearer than any push that stays on screen.
        QTest::newRow("ring step beats a far push")
            << QRectF(0, 0, 100, 100) << Rects{{60, 60, 100, 100}, {110, -200, 200, 220}}
            << Bounds(QRectF(0, 0, 1000, 1000)) << QRectF(0, 168, 100, 100);
        QTest::newRow("nowhere to go: stays put")
            << r << Rects{{0, 0, 300, 300}} << Bounds(QRectF(0, 0, 300, 300)) << r;
        QTest::newRow("no bounds: push anywhere")
            << r << Rects{{150, 100, 100, 100}} << Bounds() << QRectF(34, 100, 100, 100);
    }
    void resolve() {
        QFETCH(QRectF, rect);
        QFETCH(Rects, avoiding);
        QFETCH(Bounds, bounds);
        QFETCH(QRectF, expected);
        const QRectF result = tw::OverlapResolver::resolve(rect, avoiding, bounds, 16);
        QCOMPARE(result, expected);
        if (result != rect) {
            for (const QRectF& other : avoiding) {
                QVERIFY(!tw::OverlapResolver::overlaps(result, other));
            }
        }
    }

    // Every ray from the tile is blocked, so only the scan finds the free corner.
    void resolveFallsBackToTheScan() {
        const QRectF bounds(0, 0, 250, 250);
        const QRectF rect(70, 70, 100, 100);
        const Rects avoiding{{0, 0, 250, 130}, {130, 0, 120, 250}};
        QCOMPARE(tw::OverlapResolver::resolve(rect, avoiding, bounds, 16),
                 QRectF(24, 144, 100, 100));
    }

    void scan_data() {
        QTest::addColumn<QRectF>("rect");
        QTest::addColumn<Rects>("avoiding");
        QTest::addColumn<Bounds>("bounds");
        QTest::addColumn<double>("step");
        QTest::addColumn<Bounds>("expected");
        const QRectF r(50, 50, 100, 100);
        const Bounds b = QRectF(0, 0, 400, 400);
        QTest::newRow("no bounds") << r << Rects{} << Bounds() << 24.0 << Bounds();
        QTest::newRow("infinite bounds")
            << r << Rects{} << Bounds(QRectF(0, 0, qInf(), 100)) << 24.0 << Bounds();
        QTest::newRow("zero step") << r << Rects{} << b << 0.0 << Bounds();
        QTest::newRow("too wide") << QRectF(0, 0, 401, 10) << Rects{} << b << 24.0 << Bounds();
        QTest::newRow("free: nearest grid place")
            << r << Rects{} << b << 24.0 << Bounds(QRectF(48, 48, 100, 100));
        QTest::newRow("full") << r << Rects{{0, 0, 400, 400}} << b << 24.0 << Bounds();
        QTest::newRow("last row and column reach the far edges")
            << QRectF(300, 300, 100, 100) << Rects{{0, 0, 299, 400}} << b << 100.0
            << Bounds(QRectF(300, 300, 100, 100));
        QTest::newRow("equal distance: the first found stays")
            << QRectF(150, 0, 100, 100) << Rects{{100, 0, 200, 100}}
            << Bounds(QRectF(0, 0, 400, 100)) << 100.0 << Bounds(QRectF(0, 0, 100, 100));
    }
    void scan() {
        QFETCH(QRectF, rect);
        QFETCH(Rects, avoiding);
        QFETCH(Bounds, bounds);
        QFETCH(double, step);
        QFETCH(Bounds, expected);
        QCOMPARE(tw::OverlapResolver::scan(rect, avoiding, bounds, step), expected);
    }
};

QTEST_GUILESS_MAIN(TestOverlapResolver)
#include "tst_overlapresolver.moc"
