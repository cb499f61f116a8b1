#include "TestRows.h"
#include "files/Slideshow.h"

#include <QSet>
#include <QTest>

using namespace tw;
using namespace std::chrono_literals;
using tw::test::row;

class TestSlideshow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void frames_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<qint64>("ms");
        QTest::addColumn<qint64>("skipped");
        QTest::addColumn<int>("current");
        QTest::addColumn<int>("previous");
        QTest::addColumn<double>("fade");
        QTest::addColumn<qint64>("untilNext");
        // A minute a picture.
        row("empty folder", 0, qint64(5000), qint64(0), -1, -1, 1.0, qint64(0));
        row("one picture never fades", 1, qint64(60000), qint64(0), 0, 0, 1.0, qint64(60000));
        row("mid-interval", 3, qint64(90000), qint64(0), 1, 1, 1.0, qint64(30000));
        row("fading in", 3, qint64(120600), qint64(0), 2, 1, 0.5, qint64(59400));
        row("wraps round", 3, qint64(180000), qint64(0), 0, 2, 0.0, qint64(60000));
        row("a click moves on", 3, qint64(90000), qint64(1), 2, 2, 1.0, qint64(30000));
        row("before 1970", 3, qint64(-30000), qint64(0), 2, 2, 1.0, qint64(30000));
    }
    void frames() {
        QFETCH(int, count);
        QFETCH(qint64, ms);
        QFETCH(qint64, skipped);
        const Slideshow show{.count = count,
                             .interval = 60s,
                             .order = Slideshow::Order::sequential,
                             .seed = 0,
                             .skipped = skipped};
        const Slideshow::Frame frame = show.at(ms);
        QTEST(frame.current, "current");
        QTEST(frame.previous, "previous");
        QTEST(frame.fade, "fade");
        QTEST(qint64(frame.untilNext.count()), "untilNext");
    }

    // Every round of a shuffled show visits each picture once, and rounds differ.
    void shuffledRoundsArePermutations_data() {
        QTest::addColumn<int>("count");
        for (const int count : {3, 4, 7, 12, 100, 1000}) {
            QTest::addRow("%d", count) << count;
        }
    }
    void shuffledRoundsArePermutations() {
        QFETCH(int, count);
        const Slideshow show{.count = count,
                             .interval = 10s,
                             .order = Slideshow::Order::shuffled,
                             .seed = 77,
                             .skipped = 0};
        QList<int> first;
        for (int round = 0; round < 3; ++round) {
            QSet<int> seen;
            QList<int> order;
            for (int i = 0; i < count; ++i) {
                const int picture = show.pictureAt(qint64(round) * count + i - 77);
                QVERIFY(picture >= 0 && picture < count);
                seen.insert(picture);
                order.append(picture);
            }
            QCOMPARE(seen.size(), count);
            if (round == 0) {
                first = order;
            } else if (count > 4) {
                QVERIFY(order != first);
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestSlideshow)
#include "tst_slideshow.moc"
