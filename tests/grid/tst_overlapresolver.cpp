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
        QTest::newRow("nearest push is right")
            << r << Rects{{30, 100, 100, 100}} << screen << QRectF(146, 100, 100, 100);
        QTest::newRow("nearest push is up")
            << r << Rects{{100, 30, 100, 100}} << screen << QRectF(100, 146, 100, 100);
        QTest::newRow("a shallow overlap still ends the gap away")
            << r << Rects{{20, 100, 100, 100}} << screen << QRectF(136, 100, 100, 100);
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
        // Left is off screen, right and the nearer places up are blocked by the second tile.
        QTest::newRow("past the second tile too")
            << QRectF(0, 0, 100, 100) << Rects{{60, 60, 100, 100}, {110, -200, 200, 220}}
            << Bounds(QRectF(0, 0, 1000, 1000)) << QRectF(0, 176, 100, 100);
        // No push past one tile is free of the other: the answer rests on both.
        QTest::newRow("a corner between two")
            << QRectF(70, 70, 100, 100) << Rects{{0, 0, 250, 130}, {130, 0, 120, 250}}
            << Bounds(QRectF(0, 0, 250, 250)) << QRectF(14, 146, 100, 100);
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
        // Moved, it keeps the gap from every tile.
        if (result != rect) {
            for (const QRectF& other : avoiding) {
                QVERIFY(!tw::OverlapResolver::overlaps(result, other.adjusted(-16, -16, 16, 16)));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestOverlapResolver)
#include "tst_overlapresolver.moc"
