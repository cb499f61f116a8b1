#include "TestRows.h"
#include "desktop/DragTracker.h"

#include <QTest>

using namespace tw;
using tw::test::row;

using Release = DragTracker::Release;
using Shift = DragTracker::Shift;
using Needs = DragTracker::MoveNeedsShift;

Q_DECLARE_METATYPE(DragTracker::Release)
Q_DECLARE_METATYPE(DragTracker::MoveNeedsShift)

class tst_DragTracker : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void clickOrDrag_data() {
        QTest::addColumn<QPointF>("to");
        QTest::addColumn<Needs>("needsShift");
        QTest::addColumn<int>("shift"); // 0 up, 1 down
        QTest::addColumn<bool>("moves");
        QTest::addColumn<Release>("release");
        row("2-point wiggle stays a click", QPointF(2, -2), Needs::No, 0, false, Release::Click);
        row("exactly 3 points is still a click", QPointF(3, 3), Needs::No, 0, false,
            Release::Click);
        row("beyond 3 points on one axis drags", QPointF(0, 3.01), Needs::No, 0, true,
            Release::DragEnded);
        row("shift needed, not held: no move, no click", QPointF(40, 0), Needs::Yes, 0, false,
            Release::Nothing);
        row("shift needed and held: moves", QPointF(40, 0), Needs::Yes, 1, true,
            Release::DragEnded);
        row("shift needed, a click still works", QPointF(1, 1), Needs::Yes, 0, false,
            Release::Click);
    }
    void clickOrDrag() {
        QFETCH(QPointF, to);
        QFETCH(Needs, needsShift);
        QFETCH(int, shift);
        QFETCH(Release, release);
        DragTracker drag;
        drag.press(QPointF(500, 500), QPointF(100, 200), needsShift);
        const auto origin = drag.move(QPointF(500, 500) + to, shift ? Shift::Down : Shift::Up);
        QTEST(origin.has_value(), "moves");
        if (origin) {
            QCOMPARE(*origin, QPointF(100, 200) + to);
        }
        QCOMPARE(drag.release(), release);
        QVERIFY(!drag.isPressed());
    }

    void lettingGoOfShiftStopsTheMove() {
        DragTracker drag;
        drag.press(QPointF(0, 0), QPointF(10, 10), Needs::Yes);
        QCOMPARE(drag.move(QPointF(20, 0), Shift::Down), std::optional<QPointF>(QPointF(30, 10)));
        QVERIFY(!drag.move(QPointF(40, 0), Shift::Up));
        // Pressing shift again does not bring the move back within the same press.
        QVERIFY(!drag.move(QPointF(60, 0), Shift::Down));
        QCOMPARE(drag.release(), Release::DragEnded);
    }

    void snapsTheTileNotTheFrame_data() {
        QTest::addColumn<QPointF>("origin");
        QTest::addColumn<QPointF>("expected");
        // Neighbour tile 100...304 in x, 500...704 in y; a 204 × 204 tile in a 248 × 248 frame.
        row("flush left edges, 14 away", QPointF(114 - 22, 1000), QPointF(100 - 22, 1000));
        row("14.01 away stays", QPointF(114.01 - 22, 1000), QPointF(114.01 - 22, 1000));
        row("just past with the gap", QPointF(304 + 12 + 5 - 22, 1000),
            QPointF(304 + 12 - 22, 1000));
        row("top edges flush", QPointF(1000, 510 - 22), QPointF(1000, 500 - 22));
    }
    void snapsTheTileNotTheFrame() {
        QFETCH(QPointF, origin);
        const QPointF snapped = DragTracker::snapped(origin, QSizeF(248, 248),
                                                     {QRectF(100, 500, 204, 204)}, std::nullopt);
        QTEST(snapped, "expected");
    }
};

QTEST_MAIN(tst_DragTracker)
#include "tst_dragtracker.moc"
