#include "grid/OverlapResolver.h"

#include <QRandomGenerator>
#include <QTest>

#include <limits>

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

    // The scan skips places it knows to be taken; it must find what trying every place finds.
    void scanAgreesWithTryingEveryPlace() {
        QRandomGenerator random(42);
        int found = 0;
        for (int round = 0; round < 300; ++round) {
            const QRectF bounds(random.bounded(100.0), random.bounded(100.0),
                                300 + random.bounded(700.0), 300 + random.bounded(500.0));
            Rects avoiding;
            for (int i = random.bounded(1, 80); i > 0; --i) {
                avoiding << QRectF(bounds.x() + random.bounded(bounds.width()),
                                   bounds.y() + random.bounded(bounds.height()),
                                   20 + random.bounded(200.0), 20 + random.bounded(200.0));
            }
            const QRectF rect(bounds.x() + random.bounded(bounds.width() - 100),
                              bounds.y() + random.bounded(bounds.height() - 100),
                              50 + random.bounded(50.0), 50 + random.bounded(50.0));
            const double step = 5 + random.bounded(30);
            const Bounds fast = tw::OverlapResolver::scan(rect, avoiding, bounds, step);
            QCOMPARE(fast, everyPlace(rect, avoiding, bounds, step));
            found += fast ? 1 : 0;
        }
        // Both outcomes are covered.
        QVERIFY(found > 30 && found < 270);
    }

private:
    static Bounds everyPlace(const QRectF& rect, const Rects& avoiding, const QRectF& bounds,
                             double step) {
        Bounds best;
        double bestDistance = std::numeric_limits<double>::infinity();
        for (int iy = 0; bounds.y() + iy * step <= bounds.y() + bounds.height() - rect.height();
             ++iy) {
            for (int ix = 0; bounds.x() + ix * step <= bounds.x() + bounds.width() - rect.width();
                 ++ix) {
                const QRectF candidate(bounds.x() + ix * step, bounds.y() + iy * step, rect.width(),
                                       rect.height());
                bool free = true;
                for (const QRectF& other : avoiding) {
                    free = free && !tw::OverlapResolver::overlaps(candidate, other);
                }
                const QPointF d = candidate.center() - rect.center();
                const double distance = d.x() * d.x() + d.y() * d.y();
                if (free && distance < bestDistance) {
                    best = candidate;
                    bestDistance = distance;
                }
            }
        }
        return best;
    }
};

QTEST_GUILESS_MAIN(TestOverlapResolver)
#include "tst_overlapresolver.moc"
