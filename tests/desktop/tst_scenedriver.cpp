// A scene's frames: at the rate asked, none while stopped, and a scene time that goes on from
// where it stopped.
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "desktop/SceneDriver.h"

#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;

class TestSceneDriver : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void framesFollowTheRate_data() {
        QTest::addColumn<double>("fps");
        QTest::addColumn<int>("framesInASecond");
        row("still", 0.0, 0);
        row("efficient", 8.0, 8);
        row("smooth", 30.0, 30);
        row("negative is still", -4.0, 0);
        row("not a number is still", std::nan(""), 0);
    }
    void framesFollowTheRate() {
        QFETCH(double, fps);
        QFETCH(int, framesInASecond);
        ManualClock clock;
        ManualScheduler scheduler(&clock);
        int frames = 0;
        double last = -1;
        SceneDriver driver(scheduler, clock, [&](double t) {
            ++frames;
            QVERIFY(t > last);
            last = t;
        });
        driver.setRate(fps);
        scheduler.advance(1s);
        QVERIFY(std::abs(frames - framesInASecond) <= 1);
        QCOMPARE(scheduler.pending().size(), framesInASecond > 0 ? size_t(1) : size_t(0));
    }

    // Covered for an hour, the scene goes on from the frame where it stopped.
    void aPauseCostsNoTime() {
        ManualClock clock;
        ManualScheduler scheduler(&clock);
        SceneDriver driver(scheduler, clock, [](double) {});
        driver.setRate(10);
        scheduler.advance(2s);
        const double stopped = driver.sceneTime();
        QVERIFY(std::abs(stopped - 2.0) < 0.01);
        driver.setRate(0);
        scheduler.advance(1h);
        QCOMPARE(driver.sceneTime(), stopped);
        driver.setRate(10);
        scheduler.advance(500ms);
        QVERIFY(std::abs(driver.sceneTime() - (stopped + 0.5)) < 0.01);
    }

    // Asking for the same rate again keeps the timer's phase.
    void theSameRateKeepsTheTimer() {
        ManualClock clock;
        ManualScheduler scheduler(&clock);
        int frames = 0;
        SceneDriver driver(scheduler, clock, [&](double) { ++frames; });
        driver.setRate(4);
        scheduler.advance(200ms);
        driver.setRate(4);
        scheduler.advance(50ms);
        QCOMPARE(frames, 1);
    }
};

QTEST_GUILESS_MAIN(TestSceneDriver)
#include "tst_scenedriver.moc"
