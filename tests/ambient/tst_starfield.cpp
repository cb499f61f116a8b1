#include "TestRows.h"
#include "ambient/StarField.h"

#include <QTest>

using namespace tw;
using tw::test::row;

Q_DECLARE_METATYPE(tw::StarField::Drift)

class TestStarField : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void stars_data() {
        QTest::addColumn<QSizeF>("size");
        QTest::addColumn<double>("density");
        QTest::addColumn<int>("count");
        row("a small tile", QSizeF(72, 72), 1.0, 8);
        row("the largest, a few", QSizeF(312, 200), 0.5, 49);
        row("the largest, many", QSizeF(312, 200), 2.0, 199);
        row("a density past the end holds at the end", QSizeF(312, 200), 50.0, 299);
        row("no room, no stars", QSizeF(0, 200), 1.0, 0);
        row("a nonsense size, no stars", QSizeF(-5, -5), 1.0, 0);
    }
    // The number grows with the area, every star stays in the field at any time and for any
    // drift, twinkling never passes its magnitude, and the same seed gives the same sky.
    void stars() {
        QFETCH(QSizeF, size);
        QFETCH(double, density);
        QFETCH(int, count);
        const auto stars = StarField::stars(size, density, 9);
        QCOMPARE(int(stars.size()), count);
        QCOMPARE(int(StarField::stars(size, density, 9).size()), count);
        for (const Star& star : stars) {
            for (const double t : {0.0, 0.37, 61.0, 86400.5}) {
                for (const auto drift : {StarField::Drift::still, StarField::Drift::fast}) {
                    const QPointF at = StarField::position(star, size, drift, t);
                    QVERIFY(at.x() >= 0 && at.x() < size.width());
                    QVERIFY(at.y() >= 0 && at.y() < size.height());
                }
                const float b = StarField::brightness(star, t);
                QVERIFY(b >= star.magnitude * 0.6f && b <= star.magnitude);
            }
        }
        if (!stars.empty()) {
            QCOMPARE(StarField::stars(size, density, 9).front().origin, stars.front().origin);
            QVERIFY(StarField::stars(size, density, 10).front().origin != stars.front().origin);
        }
    }

    void drift() {
        const Star star{.origin = QPointF(10, 5),
                        .magnitude = 1,
                        .warmth = 0,
                        .phase = 0,
                        .rate = 1,
                        .depth = 2};
        const QSizeF size(100, 50);
        QCOMPARE(StarField::position(star, size, StarField::Drift::still, 1000), QPointF(10, 5));
        const double step = StarField::speed(StarField::Drift::slow, 2);
        QVERIFY(step > StarField::speed(StarField::Drift::slow, 0));
        QCOMPARE(StarField::position(star, size, StarField::Drift::slow, 1).x(), 10 - step);
        // Leaving on the left, it comes back on the right.
        QCOMPARE(StarField::position(star, size, StarField::Drift::slow, 11 / step).x(), 99.0);
    }

    // Ten minutes of sky at 20 frames a second: shooting stars are occasional, brief, and none
    // crosses an empty field.
    void meteors() {
        const QSizeF size(312, 200);
        int seen = 0;
        int frames = 0;
        double last = -1;
        for (int frame = 0; frame < 600 * 20; ++frame) {
            const double t = frame / 20.0;
            const auto meteor = StarField::meteor(size, t, 5);
            QVERIFY(!StarField::meteor(QSizeF(), t, 5));
            if (!meteor) {
                continue;
            }
            ++frames;
            QVERIFY(meteor->progress >= 0 && meteor->progress < 1);
            if (t - last > 0.1) {
                ++seen;
            }
            last = t;
        }
        const double expected = 600 / StarField::meteorPeriod;
        QVERIFY2(seen >= expected * 0.4 && seen <= expected, qPrintable(QString::number(seen)));
        QVERIFY(frames <= seen * int(StarField::meteorSeconds * 20 + 1));
    }
};

QTEST_GUILESS_MAIN(TestStarField)
#include "tst_starfield.moc"
