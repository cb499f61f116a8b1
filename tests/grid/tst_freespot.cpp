#include "grid/FreeSpot.h"

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
        QTest::newRow("empty desktop: 48 in from the top-left")
            << small << frame << Rects{} << Spot(QPointF(48, 827));
        QTest::newRow("frame not at the origin")
            << small << QRectF(1440, -200, 1920, 1055) << Rects{} << Spot(QPointF(1488, 807));
        QTest::newRow("second tile: the spacing right of the first")
            << small << frame << Rects{{48, 731, 96, 96}} << Spot(QPointF(156, 827));
        QTest::newRow("tiles elsewhere don't count")
            << small << frame << Rects{{-2000, 731, 96, 96}} << Spot(QPointF(48, 827));
        QTest::newRow("a narrow frame goes to the next row, the spacing below")
            << small << QRectF(0, 0, 200, 400) << Rects{{48, 256, 96, 96}}
            << Spot(QPointF(48, 244));
        QTest::newRow("1300 on 1350 is refused")
            << QSizeF(1300, 96) << QRectF(0, 0, 1350, 900) << Rects{} << Spot();
        QTest::newRow("1254 on 1350 just fits")
            << QSizeF(1254, 96) << QRectF(0, 0, 1350, 900) << Rects{} << Spot(QPointF(48, 852));
        QTest::newRow("too tall") << QSizeF(96, 805) << QRectF(0, 0, 1000, 900) << Rects{}
                                  << Spot();
        QTest::newRow("empty tile") << QSizeF(0, 96) << frame << Rects{} << Spot();
        QTest::newRow("full screen") << small << frame << Rects{frame} << Spot();
        // Past the blocker (26 + 80 + 12) the tile's right edge 214 passes the margin by 0.4.
        QTest::newRow("right edge may pass by 0.5")
            << small << QRectF(0, 0, 261.6, 400) << Rects{{26, 250, 80, 124}}
            << Spot(QPointF(118, 352));
        QTest::newRow("but not by 0.6") << small << QRectF(0, 0, 261.4, 400)
                                        << Rects{{26, 250, 80, 124}} << Spot(QPointF(48, 238));
        QTest::newRow("below a wide blocker")
            << small << frame << Rects{{0, 700, 1440, 175}} << Spot(QPointF(48, 688));
    }
    void find() {
        QFETCH(QSizeF, tile);
        QFETCH(QRectF, frame);
        QFETCH(Rects, occupied);
        QFETCH(Spot, expected);
        QCOMPARE(tw::FreeSpot::find(tile, frame, occupied), expected);
    }
};

QTEST_GUILESS_MAIN(TestFreeSpot)
#include "tst_freespot.moc"
