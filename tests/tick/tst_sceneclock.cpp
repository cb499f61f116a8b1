#include "TestRows.h"
#include "tick/AnimationPace.h"
#include "tick/SceneClock.h"

#include <QTest>

using tw::test::row;
using namespace tw;
using Seconds = SceneClock::Seconds;
using Paused = SceneClock::Paused;

Q_DECLARE_METATYPE(tw::AnimationPace)

// How fast a scene may run, and the time it runs on.
class TestSceneClock : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void pace_data() {
        QTest::addColumn<AnimationPace>("pace");
        QTest::addColumn<double>("requested");
        QTest::addColumn<double>("expected");
        QTest::newRow("efficient caps at 8") << AnimationPace::efficient() << 30.0 << 8.0;
        QTest::newRow("capped lower") << AnimationPace::capped(12) << 30.0 << 12.0;
        QTest::newRow("capped above request") << AnimationPace::capped(60) << 30.0 << 30.0;
        QTest::newRow("capped negative") << AnimationPace::capped(-1) << 30.0 << 0.0;
        QTest::newRow("paused") << AnimationPace::paused() << 30.0 << 0.0;
        QTest::newRow("smooth") << AnimationPace::smooth() << 120.0 << 120.0;
        QTest::newRow("default is smooth") << AnimationPace() << 60.0 << 60.0;
    }
    void pace() {
        QFETCH(AnimationPace, pace);
        QFETCH(double, requested);
        QTEST(pace.fps(requested), "expected");
    }

    // Calls at wall times in seconds: "p" before one marks it paused, "@" after it gives a pin.
    // The scene times they answer, in order.
    void sceneTime_data() {
        QTest::addColumn<QString>("calls");
        QTest::addColumn<QString>("times");
        row("a frame", "100 100.25", "0 0.25");
        row("a sleep moves one second", "100 3700", "0 1");
        row("a step back moves nothing", "100 40", "0 0");
        row("not a number moves nothing", "100 nan", "0 0");
        row("a pause holds, and its first call after adds nothing",
            "10 10.5 p11 p3611 3611.2 3611.7", "0 0.5 0.5 0.5 0.5 1");
        row("a pin stands and moves neither the scene nor the last wall time", "10 10.5@42 10.75",
            "0 42 0.75");
    }
    void sceneTime() {
        QFETCH(QString, calls);
        SceneClock clock;
        QStringList times;
        for (QString call : calls.split(QLatin1Char(' '))) {
            const Paused paused = call.startsWith(u'p') ? Paused::Yes : Paused::No;
            call.remove(u'p');
            std::optional<Seconds> pin;
            if (const qsizetype at = call.indexOf(u'@'); at >= 0) {
                pin = Seconds(call.mid(at + 1).toDouble());
                call.truncate(at);
            }
            const double wall = call == QLatin1String("nan") ? qQNaN() : call.toDouble();
            times << QString::number(clock.time(Seconds(wall), paused, pin).count());
        }
        QTEST(times.join(QLatin1Char(' ')), "times");
    }
};

QTEST_GUILESS_MAIN(TestSceneClock)
#include "tst_sceneclock.moc"
