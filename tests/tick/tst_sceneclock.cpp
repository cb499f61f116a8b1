#include "tick/SceneClock.h"

#include <QTest>

#include <limits>

using namespace tw;
using Seconds = SceneClock::Seconds;
using Paused = SceneClock::Paused;

class TestSceneClock : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void stepsAreClamped_data() {
        QTest::addColumn<double>("first");
        QTest::addColumn<double>("second");
        QTest::addColumn<double>("expected");
        QTest::newRow("a frame") << 100.0 << 100.25 << 0.25;
        QTest::newRow("a sleep moves one second") << 100.0 << 3700.0 << 1.0;
        QTest::newRow("a step back moves nothing") << 100.0 << 40.0 << 0.0;
        QTest::newRow("not a number moves nothing")
            << 100.0 << std::numeric_limits<double>::quiet_NaN() << 0.0;
    }
    void stepsAreClamped() {
        QFETCH(double, first);
        QFETCH(double, second);
        QFETCH(double, expected);
        SceneClock clock;
        QCOMPARE(clock.time(Seconds(first), Paused::No).count(), 0.0);
        QCOMPARE(clock.time(Seconds(second), Paused::No).count(), expected);
    }

    void continuesFromWhereItPaused() {
        SceneClock clock;
        clock.time(Seconds(10), Paused::No);
        clock.time(Seconds(10.5), Paused::No);
        QCOMPARE(clock.time(Seconds(11), Paused::Yes).count(), 0.5);
        QCOMPARE(clock.time(Seconds(3611), Paused::Yes).count(), 0.5);
        // The first call after an hour's pause adds nothing.
        QCOMPARE(clock.time(Seconds(3611.2), Paused::No).count(), 0.5);
        QCOMPARE(clock.time(Seconds(3611.7), Paused::No).count(), 1.0);
    }

    void aPinnedTimeStandsAndLeavesTheClockAlone() {
        SceneClock clock;
        clock.time(Seconds(10), Paused::No);
        QCOMPARE(clock.time(Seconds(10.5), Paused::No, Seconds(42)).count(), 42.0);
        QCOMPARE(clock.accumulated().count(), 0.0);
        // The pin did not move the last wall time either.
        QCOMPARE(clock.time(Seconds(10.75), Paused::No).count(), 0.75);
    }
};

QTEST_GUILESS_MAIN(TestSceneClock)
#include "tst_sceneclock.moc"
