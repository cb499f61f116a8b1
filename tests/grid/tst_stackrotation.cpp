// Which member of a stack is on show and when it turns, without a screen.
#include "grid/StackRotation.h"

#include <QTest>

using namespace tw;

Q_DECLARE_METATYPE(StackRotation::Zone)

class TestStackRotation : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void zones_data() {
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<StackRotation::Zone>("zone");
        // A tile 204 points wide; y runs up from its bottom edge.
        QTest::newRow("left arrow") << QPointF(29, 100) << StackRotation::Zone::previous;
        QTest::newRow("right arrow") << QPointF(175, 100) << StackRotation::Zone::next;
        QTest::newRow("dots") << QPointF(100, 19) << StackRotation::Zone::dots;
        QTest::newRow("arrows win over dots") << QPointF(10, 5) << StackRotation::Zone::previous;
        QTest::newRow("the tile's own") << QPointF(30, 20) << StackRotation::Zone::tile;
    }
    void zones() {
        QFETCH(QPointF, point);
        QFETCH(StackRotation::Zone, zone);
        QCOMPARE(StackRotation::zoneAt(point, 204), zone);
    }

    // A stack turns once per period, not while held, not with one member; a step by hand or a
    // new period restarts the wait.
    void turns() {
        StackRotation rotation;
        const QUuid id = QUuid::createUuid();
        const QDateTime t0(QDate(2026, 11, 23), QTime(9, 0));
        StackRotation::Stack stack{.id = id, .count = 3, .seconds = 4, .held = false};
        QVERIFY(!rotation.advance({stack}, t0)); // first sight starts the period
        QVERIFY(!rotation.advance({stack}, t0.addSecs(3)));
        QVERIFY(rotation.advance({stack}, t0.addSecs(4)));
        QCOMPARE(rotation.active(id, 3), 1);
        stack.held = true;
        QVERIFY(!rotation.advance({stack}, t0.addSecs(9)));
        stack.held = false;
        rotation.step(id, -2, 3, t0.addSecs(9));
        QCOMPARE(rotation.active(id, 3), 2);
        QVERIFY(!rotation.advance({stack}, t0.addSecs(12)));
        QVERIFY(rotation.advance({stack}, t0.addSecs(13)));
        QCOMPARE(rotation.active(id, 3), 0);
        // Fewer members than the index on show: the last one is on show.
        rotation.setActive(id, 5);
        QCOMPARE(rotation.active(id, 2), 1);
        stack.count = 1;
        QVERIFY(!rotation.advance({stack}, t0.addSecs(60)));
    }
};

QTEST_GUILESS_MAIN(TestStackRotation)
#include "tst_stackrotation.moc"
