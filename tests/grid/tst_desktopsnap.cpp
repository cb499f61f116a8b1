#include "grid/DesktopSnap.h"

#include <QTest>

using Range = tw::DesktopSnap::Range;
Q_DECLARE_METATYPE(QList<Range>)
Q_DECLARE_METATYPE(std::optional<Range>)

class TestDesktopSnap : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void axis_data() {
        QTest::addColumn<double>("position");
        QTest::addColumn<double>("tile");
        QTest::addColumn<QList<Range>>("neighbours");
        QTest::addColumn<std::optional<Range>>("bounds");
        QTest::addColumn<double>("expected");
        const QList<Range> one{{100, 196}};
        const std::optional<Range> none;
        QTest::newRow("nothing to snap to") << 57.0 << 96.0 << QList<Range>{} << none << 57.0;
        QTest::newRow("left edges flush at exactly 14") << 114.0 << 96.0 << one << none << 100.0;
        QTest::newRow("14.01 away stays") << 114.01 << 96.0 << one << none << 114.01;
        QTest::newRow("from the other side") << 86.0 << 96.0 << one << none << 100.0;
        QTest::newRow("right edges flush") << 135.0 << 50.0 << one << none << 146.0;
        QTest::newRow("just past with the gap") << 205.0 << 96.0 << one << none << 208.0;
        QTest::newRow("just before with the gap") << -5.0 << 96.0 << one << none << -8.0;
        QTest::newRow("centres aligned") << 45.0 << 100.0 << QList<Range>{{0, 200}} << none << 50.0;
        QTest::newRow("screen edge with the gap")
            << 20.0 << 96.0 << QList<Range>{} << std::optional<Range>(Range{0, 1000}) << 12.0;
        QTest::newRow("screen's far edge")
            << 880.0 << 96.0 << QList<Range>{} << std::optional<Range>(Range{0, 1000}) << 892.0;
        QTest::newRow("screen centre")
            << 445.0 << 100.0 << QList<Range>{} << std::optional<Range>(Range{0, 1000}) << 450.0;
        QTest::newRow("nearest over two neighbours")
            << 300.0 << 96.0 << QList<Range>{{100, 196}, {290, 400}} << none << 297.0;
        QTest::newRow("equal pull: the first stays")
            << 50.0 << 10.0 << QList<Range>{{40, 500}, {60, 600}} << none << 40.0;
        QTest::newRow("equal pull, order swapped")
            << 50.0 << 10.0 << QList<Range>{{60, 600}, {40, 500}} << none << 60.0;
    }
    void axis() {
        QFETCH(double, position);
        QFETCH(double, tile);
        QFETCH(QList<Range>, neighbours);
        QFETCH(std::optional<Range>, bounds);
        QFETCH(double, expected);
        QCOMPARE(tw::DesktopSnap::axis(position, tile, neighbours, bounds), expected);
    }
};

QTEST_GUILESS_MAIN(TestDesktopSnap)
#include "tst_desktopsnap.moc"
