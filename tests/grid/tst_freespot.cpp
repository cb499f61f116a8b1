#include "grid/FreeSpot.h"

#include <QRandomGenerator>
#include <QTest>

using Rects = QList<QRectF>;
using Spot = std::optional<QPointF>;
Q_DECLARE_METATYPE(Spot)

class TestFreeSpot : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void find_data() {
        QTest::addColumn<QSizeF>("tile");
        QTest::addColumn<QRectF>("frame");
        QTest::addColumn<Rects>("occupied");
        QTest::addColumn<Spot>("expected");
        const QSizeF small(96, 96);
        const QRectF frame(0, 0, 1440, 875);
        QTest::newRow("empty desktop: 40 in from the top-left")
            << small << frame << Rects{} << Spot(QPointF(40, 835));
        QTest::newRow("frame not at the origin")
            << small << QRectF(1440, -200, 1920, 1055) << Rects{} << Spot(QPointF(1480, 815));
        QTest::newRow("second tile: 96 + 14 rounds up to 120")
            << small << frame << Rects{{40, 739, 96, 96}} << Spot(QPointF(160, 835));
        QTest::newRow("tiles elsewhere don't count")
            << small << frame << Rects{{-2000, 739, 96, 96}} << Spot(QPointF(40, 835));
        QTest::newRow("a narrow frame goes to the next row")
            << small << QRectF(0, 0, 200, 400) << Rects{{40, 264, 96, 96}}
            << Spot(QPointF(40, 240));
        QTest::newRow("1300 on 1350 is refused")
            << QSizeF(1300, 96) << QRectF(0, 0, 1350, 900) << Rects{} << Spot();
        QTest::newRow("1270 on 1350 just fits")
            << QSizeF(1270, 96) << QRectF(0, 0, 1350, 900) << Rects{} << Spot(QPointF(40, 860));
        QTest::newRow("too tall") << QSizeF(96, 821) << QRectF(0, 0, 1000, 900) << Rects{}
                                  << Spot();
        QTest::newRow("empty tile") << QSizeF(0, 96) << frame << Rects{} << Spot();
        QTest::newRow("full screen") << small << frame << Rects{frame} << Spot();
        // The blocker pushes the tile to x 120, whose right edge 216 passes the margin by 0.4.
        QTest::newRow("right edge may pass by 0.5")
            << small << QRectF(0, 0, 255.6, 400) << Rects{{26, 250, 80, 124}}
            << Spot(QPointF(120, 360));
        QTest::newRow("but not by 0.6") << small << QRectF(0, 0, 255.4, 400)
                                        << Rects{{26, 250, 80, 124}} << Spot(QPointF(40, 220));
        QTest::newRow("below a wide blocker")
            << small << frame << Rects{{0, 700, 1440, 175}} << Spot(QPointF(40, 675));
    }
    void find() {
        QFETCH(QSizeF, tile);
        QFETCH(QRectF, frame);
        QFETCH(Rects, occupied);
        QFETCH(Spot, expected);
        QCOMPARE(tw::FreeSpot::find(tile, frame, occupied), expected);
    }

    // Many tiles placed one after another never overlap and keep the clearance.
    void fillsAScreenWithoutOverlap() {
        const QRectF frame(0, 0, 1440, 875);
        Rects placed;
        while (const auto spot = tw::FreeSpot::find(QSizeF(96, 96), frame, placed)) {
            const QRectF rect(spot->x(), spot->y() - 96, 96, 96);
            for (const QRectF& other : placed) {
                QVERIFY(!rect.intersects(other.adjusted(-14, -14, 14, 14)));
            }
            QVERIFY(frame.adjusted(39.5, 39.5, -39.5, -39.5).contains(rect));
            placed.append(rect);
            QVERIFY(placed.size() < 200);
        }
        // Rows of 11 (x from 40 in steps of 120) and 6 rows (tops 835, 715, ... 235).
        QCOMPARE(placed.size(), 66);
    }

    // The search jumps over places it knows to be taken; it must find what trying every place
    // from the top-left finds.
    void agreesWithTryingEveryPlace() {
        QRandomGenerator random(7);
        int found = 0;
        for (int round = 0; round < 300; ++round) {
            const QRectF frame(random.bounded(50.0), random.bounded(50.0),
                               400 + random.bounded(800.0), 300 + random.bounded(600.0));
            Rects occupied;
            for (int i = random.bounded(1, 30); i > 0; --i) {
                occupied << QRectF(frame.x() + random.bounded(frame.width()),
                                   frame.y() + random.bounded(frame.height()),
                                   20 + random.bounded(250.0), 20 + random.bounded(250.0));
            }
            const QSizeF tile(50 + random.bounded(200.0), 50 + random.bounded(200.0));
            const Spot fast = tw::FreeSpot::find(tile, frame, occupied);
            QCOMPARE(fast, everyPlace(tile, frame, occupied));
            found += fast ? 1 : 0;
        }
        QVERIFY(found > 30 && found < 270);
    }

private:
    static Spot everyPlace(const QSizeF& tile, const QRectF& frame, const Rects& occupied) {
        for (double top = frame.y() + frame.height() - 40;
             top - tile.height() >= frame.y() + 40 - 0.5; top -= 20) {
            for (double x = frame.x() + 40;
                 x + tile.width() <= frame.x() + frame.width() - 40 + 0.5; x += 20) {
                const QRectF spot(x, top - tile.height(), tile.width(), tile.height());
                bool free = true;
                for (const QRectF& r : occupied) {
                    free = free && !spot.intersects(r.adjusted(-14, -14, 14, 14));
                }
                if (free) {
                    return QPointF(x, top);
                }
            }
        }
        return std::nullopt;
    }
};

QTEST_GUILESS_MAIN(TestFreeSpot)
#include "tst_freespot.moc"
