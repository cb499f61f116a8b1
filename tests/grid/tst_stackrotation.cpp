// Which member of a stack is on show and when it turns, and the swipes and wheel clicks that
// step it, without a screen.
#include "grid/StackRotation.h"
#include "grid/StackScrollGesture.h"

#include <QTest>

using namespace tw;
using Phase = StackScrollGesture::Phase;
using Events = QList<StackScrollGesture::Event>;
using Steps = QList<int>;
Q_DECLARE_METATYPE(StackRotation::Zone)
Q_DECLARE_METATYPE(Events)

namespace {
StackScrollGesture::Event pad(Phase phase, double dx, double dy = 0) {
    return {dx, dy, phase, false, {}};
}
StackScrollGesture::Event wheel(double dy, int ms) {
    return {0, dy, Phase::none, false, std::chrono::milliseconds(ms)};
}
} // namespace

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
        QTEST(StackRotation::zoneAt(point, 204), "zone");
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
    // Each event's result: 0 for none.
    void gesture_data() {
        QTest::addColumn<Events>("events");
        QTest::addColumn<Steps>("steps");
        QTest::newRow("one swipe left is one step forward")
            << Events{pad(Phase::began, -10), pad(Phase::changed, -10), pad(Phase::changed, -10),
                      pad(Phase::changed, -30), pad(Phase::ended, 0)}
            << Steps{0, 0, 1, 0, 0};
        QTest::newRow("a swipe right steps back")
            << Events{pad(Phase::began, 12), pad(Phase::changed, 12)} << Steps{0, -1};
        QTest::newRow("short swipes don't add up")
            << Events{pad(Phase::began, -20), pad(Phase::ended, 0), pad(Phase::began, -20)}
            << Steps{0, 0, 0};
        QTest::newRow("cancel resets") << Events{pad(Phase::began, -20), pad(Phase::cancelled, 0),
                                                 pad(Phase::began, -20), pad(Phase::changed, -4)}
                                       << Steps{0, 0, 0, 1};
        QTest::newRow("the larger axis counts") << Events{pad(Phase::began, 5, -30)} << Steps{1};
        QTest::newRow("momentum never steps")
            << Events{{0, -100, Phase::changed, true, {}}, {0, -100, Phase::none, true, {}}}
            << Steps{0, 0};
        QTest::newRow("wheel down steps forward, clicks within 0.35 s merge")
            << Events{wheel(-1, 0), wheel(-1, 200), wheel(-1, 350), wheel(-1, 351)}
            << Steps{1, 0, 0, 1};
        QTest::newRow("wheel up steps back; zero is nothing")
            << Events{wheel(0, 0), wheel(3, 10), wheel(0, 1000)} << Steps{0, -1, 0};
    }
    void gesture() {
        QFETCH(Events, events);
        StackScrollGesture gesture;
        Steps got;
        for (const auto& event : events) {
            got << gesture.step(event).value_or(0);
        }
        QTEST(got, "steps");
    }
};

QTEST_GUILESS_MAIN(TestStackRotation)
#include "tst_stackrotation.moc"
