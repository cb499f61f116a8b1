#include "grid/StackScrollGesture.h"

#include <QTest>

using tw::StackScrollGesture;
using Phase = StackScrollGesture::Phase;
using Events = QList<StackScrollGesture::Event>;
using Steps = QList<int>;
Q_DECLARE_METATYPE(Events)

namespace {
StackScrollGesture::Event pad(Phase phase, double dx, double dy = 0) {
    return {dx, dy, phase, false, {}};
}
StackScrollGesture::Event wheel(double dy, int ms) {
    return {0, dy, Phase::none, false, std::chrono::milliseconds(ms)};
}
} // namespace

class TestStackScrollGesture : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Each event's result: 0 for none.
    void step_data() {
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
    void step() {
        QFETCH(Events, events);
        QFETCH(Steps, steps);
        StackScrollGesture gesture;
        Steps got;
        for (const auto& event : events) {
            got << gesture.step(event).value_or(0);
        }
        QCOMPARE(got, steps);
    }
};

QTEST_GUILESS_MAIN(TestStackScrollGesture)
#include "tst_stackscrollgesture.moc"
