#include "tick/AnimationPace.h"

#include <QTest>

using namespace tw;

Q_DECLARE_METATYPE(tw::AnimationPace)

class TestAnimationPace : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void fps_data() {
        QTest::addColumn<AnimationPace>("pace");
        QTest::addColumn<double>("requested");
        QTest::addColumn<double>("expected");
        QTest::newRow("efficient caps at 8") << AnimationPace::efficient() << 30.0 << 8.0;
        QTest::newRow("efficient keeps less") << AnimationPace::efficient() << 5.0 << 5.0;
        QTest::newRow("efficient at 8") << AnimationPace::efficient() << 8.0 << 8.0;
        QTest::newRow("capped lower") << AnimationPace::capped(12) << 30.0 << 12.0;
        QTest::newRow("capped above request") << AnimationPace::capped(60) << 30.0 << 30.0;
        QTest::newRow("capped negative") << AnimationPace::capped(-1) << 30.0 << 0.0;
        QTest::newRow("paused") << AnimationPace::paused() << 30.0 << 0.0;
        QTest::newRow("smooth") << AnimationPace::smooth() << 120.0 << 120.0;
        QTest::newRow("default is smooth") << AnimationPace() << 60.0 << 60.0;
    }
    void fps() {
        QFETCH(AnimationPace, pace);
        QFETCH(double, requested);
        QFETCH(double, expected);
        QCOMPARE(pace.fps(requested), expected);
    }
};

QTEST_GUILESS_MAIN(TestAnimationPace)
#include "tst_animationpace.moc"
