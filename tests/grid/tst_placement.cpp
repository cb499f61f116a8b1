// The pure placement rules: where a new tile lands, the edges a dragged tile clicks to, sliding a
// tile off its neighbours, and what a drop does; then whole sessions against reviewed records under
// golden/ (TW_UPDATE_GOLDEN=1 rewrites them); and which member of a stack is on show and when it
// turns, and the swipes and wheel clicks that step it.
#include "GoldenFile.h"
#include "TestRows.h"
#include "grid/DesktopSnap.h"
#include "grid/DropDecision.h"
#include "grid/FreeSpot.h"
#include "grid/OverlapResolver.h"
#include "grid/StackRotation.h"
#include "grid/StackScrollGesture.h"

#include <QTest>

using namespace tw;
using tw::test::row;
using Bounds = std::optional<QRectF>;
using Events = QList<StackScrollGesture::Event>;
using Phase = StackScrollGesture::Phase;
using Range = DesktopSnap::Range;
using Rects = QList<QRectF>;
using Spot = std::optional<QPointF>;
using Steps = QList<int>;
using Tiles = QList<DropDecision::Tile>;

Q_DECLARE_METATYPE(QList<Range>)
Q_DECLARE_METATYPE(std::optional<Range>)
Q_DECLARE_METATYPE(Bounds)
Q_DECLARE_METATYPE(Spot)
Q_DECLARE_METATYPE(Tiles)
Q_DECLARE_METATYPE(DropDecision::Outcome)
Q_DECLARE_METATYPE(StackRotation::Zone)
Q_DECLARE_METATYPE(Events)

namespace {

const QUuid a = QUuid::fromString(QStringLiteral("{00000000-0000-0000-0000-00000000000a}"));
const QUuid b = QUuid::fromString(QStringLiteral("{00000000-0000-0000-0000-00000000000b}"));
QString point(double x, double y) {
    return QStringLiteral("%1,%2").arg(x).arg(y);
}

StackScrollGesture::Event pad(Phase phase, double dx, double dy = 0) {
    return {dx, dy, phase, false, {}};
}
StackScrollGesture::Event wheel(double dy, int ms) {
    return {0, dy, Phase::none, false, std::chrono::milliseconds(ms)};
}

} // namespace

class TestPlacement : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void freeSpot_data() {
        QTest::addColumn<QSizeF>("tile");
        QTest::addColumn<QRectF>("frame");
        QTest::addColumn<Rects>("occupied");
        QTest::addColumn<Spot>("expected");
        const QSizeF small(96, 96);
        const QRectF frame(0, 0, 1440, 875);
        row("empty desktop: 48 in from the top-left", small, frame, Rects{},
            Spot(QPointF(48, 827)));
        row("frame not at the origin", small, QRectF(1440, -200, 1920, 1055), Rects{},
            Spot(QPointF(1488, 807)));
        row("second tile: the spacing right of the first", small, frame, Rects{{48, 731, 96, 96}},
            Spot(QPointF(156, 827)));
        row("tiles elsewhere don't count", small, frame, Rects{{-2000, 731, 96, 96}},
            Spot(QPointF(48, 827)));
        row("a narrow frame goes to the next row, the spacing below", small, QRectF(0, 0, 200, 400),
            Rects{{48, 256, 96, 96}}, Spot(QPointF(48, 244)));
        row("1300 on 1350 is refused", QSizeF(1300, 96), QRectF(0, 0, 1350, 900), Rects{}, Spot());
        row("1254 on 1350 just fits", QSizeF(1254, 96), QRectF(0, 0, 1350, 900), Rects{},
            Spot(QPointF(48, 852)));
        row("too tall", QSizeF(96, 805), QRectF(0, 0, 1000, 900), Rects{}, Spot());
        row("empty tile", QSizeF(0, 96), frame, Rects{}, Spot());
        row("full screen", small, frame, Rects{frame}, Spot());
        // Past the blocker (26 + 80 + 12) the tile's right edge 214 passes the margin by 0.4.
        row("right edge may pass by 0.5", small, QRectF(0, 0, 261.6, 400),
            Rects{{26, 250, 80, 124}}, Spot(QPointF(118, 352)));
        row("but not by 0.6", small, QRectF(0, 0, 261.4, 400), Rects{{26, 250, 80, 124}},
            Spot(QPointF(48, 238)));
    }
    void freeSpot() {
        QFETCH(QSizeF, tile);
        QFETCH(QRectF, frame);
        QFETCH(Rects, occupied);
        QTEST(FreeSpot::find(tile, frame, occupied), "expected");
    }
    void snap_data() {
        QTest::addColumn<double>("position");
        QTest::addColumn<double>("tile");
        QTest::addColumn<QList<Range>>("neighbours");
        QTest::addColumn<std::optional<Range>>("bounds");
        QTest::addColumn<double>("expected");
        const QList<Range> one{{100, 196}};
        const std::optional<Range> none;
        row("nothing to snap to", 57.0, 96.0, QList<Range>{}, none, 57.0);
        row("left edges flush at exactly 14", 114.0, 96.0, one, none, 100.0);
        row("14.01 away stays", 114.01, 96.0, one, none, 114.01);
        row("right edges flush", 135.0, 50.0, one, none, 146.0);
        row("just past with the gap", 205.0, 96.0, one, none, 208.0);
        row("just before with the gap", -5.0, 96.0, one, none, -8.0);
        row("centres aligned", 45.0, 100.0, QList<Range>{{0, 200}}, none, 50.0);
        row("screen edge with the gap", 20.0, 96.0, QList<Range>{},
            std::optional<Range>(Range{0, 1000}), 12.0);
        row("screen's far edge", 880.0, 96.0, QList<Range>{}, std::optional<Range>(Range{0, 1000}),
            892.0);
        row("screen centre", 445.0, 100.0, QList<Range>{}, std::optional<Range>(Range{0, 1000}),
            450.0);
        row("nearest over two neighbours", 300.0, 96.0, QList<Range>{{100, 196}, {290, 400}}, none,
            297.0);
        row("equal pull: the first stays", 50.0, 10.0, QList<Range>{{40, 500}, {60, 600}}, none,
            40.0);
        row("equal pull, order swapped", 50.0, 10.0, QList<Range>{{60, 600}, {40, 500}}, none,
            60.0);
    }
    void snap() {
        QFETCH(double, position);
        QFETCH(double, tile);
        QFETCH(QList<Range>, neighbours);
        QFETCH(std::optional<Range>, bounds);
        QTEST(DesktopSnap::axis(position, tile, neighbours, bounds), "expected");
    }
    void slideOff_data() {
        QTest::addColumn<QRectF>("rect");
        QTest::addColumn<Rects>("avoiding");
        QTest::addColumn<Bounds>("bounds");
        QTest::addColumn<QRectF>("expected");
        const Bounds screen = QRectF(-1000, -1000, 3000, 3000);
        const QRectF r(100, 100, 100, 100);
        row("0.5 deep is not overlap", r, Rects{{199.5, 100, 100, 100}}, screen, r);
        row("0.5 deep one way only", r, Rects{{150, 199.5, 100, 100}}, screen, r);
        row("0.6 deep slides left", r, Rects{{199.4, 100, 100, 100}}, screen,
            QRectF(83.4, 100, 100, 100));
        row("nearest push is right", r, Rects{{30, 100, 100, 100}}, screen,
            QRectF(146, 100, 100, 100));
        row("nearest push is up", r, Rects{{100, 30, 100, 100}}, screen,
            QRectF(100, 146, 100, 100));
        // Exactly on top of another: all four pushes are 116 away; the order decides.
        row("tie: left first", r, Rects{r}, screen, QRectF(-16, 100, 100, 100));
        row("tie: right when left is off screen", r, Rects{r}, Bounds(QRectF(0, -1000, 3000, 3000)),
            QRectF(216, 100, 100, 100));
        row("tie: down when left and right are off screen", r, Rects{r},
            Bounds(QRectF(0, -1000, 300, 3000)), QRectF(100, -16, 100, 100));
        row("tie: up when only up is left", r, Rects{r}, Bounds(QRectF(0, 0, 300, 3000)),
            QRectF(100, 216, 100, 100));
        row("edges may pass by 0.5", r, Rects{r}, Bounds(QRectF(-15.5, 0, 200, 300)),
            QRectF(-16, 100, 100, 100));
        // Left is off screen, right and the nearer places up are blocked by the second tile.
        row("past the second tile too", QRectF(0, 0, 100, 100),
            Rects{{60, 60, 100, 100}, {110, -200, 200, 220}}, Bounds(QRectF(0, 0, 1000, 1000)),
            QRectF(0, 176, 100, 100));
        // No push past one tile is free of the other: the answer rests on both.
        row("a corner between two", QRectF(70, 70, 100, 100),
            Rects{{0, 0, 250, 130}, {130, 0, 120, 250}}, Bounds(QRectF(0, 0, 250, 250)),
            QRectF(14, 146, 100, 100));
        row("nowhere to go: stays put", r, Rects{{0, 0, 300, 300}}, Bounds(QRectF(0, 0, 300, 300)),
            r);
        row("no bounds: push anywhere", r, Rects{{150, 100, 100, 100}}, Bounds(),
            QRectF(34, 100, 100, 100));
    }
    void slideOff() {
        QFETCH(QRectF, rect);
        QFETCH(Rects, avoiding);
        QFETCH(Bounds, bounds);
        const QRectF result = OverlapResolver::resolve(rect, avoiding, bounds, 16);
        QTEST(result, "expected");
        // Moved, it keeps the gap from every tile.
        if (result != rect) {
            for (const QRectF& other : avoiding) {
                QVERIFY(!OverlapResolver::overlaps(result, other.adjusted(-16, -16, 16, 16)));
            }
        }
    }
    void drop_data() {
        using enum DropDecision::Outcome;
        QTest::addColumn<QRectF>("rect");
        QTest::addColumn<Tiles>("others");
        QTest::addColumn<Bounds>("bounds");
        QTest::addColumn<DropDecision::Outcome>("outcome");
        QTest::addColumn<QUuid>("onto");
        QTest::addColumn<QRectF>("where");
        const Bounds screen = QRectF(0, 0, 1440, 900);
        const QRectF r(100, 100, 96, 96);
        row("empty rectangle", QRectF(100, 100, 0, 96), Tiles{}, screen, ignore, QUuid(),
            QRectF(100, 100, 0, 96));
        row("alone", r, Tiles{}, screen, stay, QUuid(), r);
        // 40 × 100 of 100 × 100: every figure is exact in binary, so the share is the
        // threshold itself.
        const QRectF square(100, 100, 100, 100);
        row("exactly 40% of the same size stacks", square,
            Tiles{{a, WidgetSize::small, {160, 100, 100, 100}}}, screen, stack, a, square);
        row("39% of the same size slides", r, Tiles{{a, WidgetSize::small, {158.56, 100, 96, 96}}},
            screen, slide, QUuid(), QRectF(50.56, 100, 96, 96));
        row("half onto another size slides", r, Tiles{{a, WidgetSize::large, {148, 0, 204, 204}}},
            screen, slide, QUuid(), QRectF(40, 100, 96, 96));
        row("the larger share wins", r,
            Tiles{{a, WidgetSize::small, {140, 100, 96, 96}},
                  {b, WidgetSize::small, {110, 100, 96, 96}}},
            screen, stack, b, r);
        row("equal shares: the first stays", r,
            Tiles{{a, WidgetSize::small, {130, 100, 96, 96}},
                  {b, WidgetSize::small, {70, 100, 96, 96}}},
            screen, stack, a, r);
        row("nowhere to slide: stays", r, Tiles{{a, WidgetSize::large, {0, 0, 300, 300}}},
            Bounds(QRectF(0, 0, 300, 300)), stay, QUuid(), r);
    }
    void drop() {
        QFETCH(QRectF, rect);
        QFETCH(Tiles, others);
        QFETCH(Bounds, bounds);
        QFETCH(DropDecision::Outcome, outcome);
        const DropDecision d = DropDecision::decide(WidgetSize::small, rect, others, bounds);
        QCOMPARE(d.outcome, outcome);
        QTEST(d.stackOnto, "onto");
        QTEST(d.rect, "where");
    }
    // A laptop screen filled with a repeating mix of sizes, one new tile after another.
    void fillingAScreen() {
        const QRectF frame(0, 0, 1440, 875);
        const QList<WidgetSize> mix{WidgetSize::large, WidgetSize::small, WidgetSize::wide,
                                    WidgetSize::tall, WidgetSize::banner};
        QList<QRectF> placed;
        QStringList lines;
        for (int n = 0; n < 40; ++n) {
            const WidgetSize size = mix.at(n % mix.size());
            const QSizeF pixels = nominalPixelSize(size);
            const auto spot = FreeSpot::find(pixels, frame, placed);
            if (!spot) {
                lines << QStringLiteral("%1 %2 -> full").arg(n).arg(rawValue(size));
                continue;
            }
            placed << QRectF(spot->x(), spot->y() - pixels.height(), pixels.width(),
                             pixels.height());
            lines << QStringLiteral("%1 %2 -> %3")
                         .arg(n)
                         .arg(rawValue(size), point(spot->x(), spot->y()));
        }
        test::compareWithGolden(QStringLiteral(TW_GOLDEN_DIR "/filling_a_screen.txt"), lines);
    }

    // Tiles dropped one after another around a cluster: each stacks, slides or stays, and the
    // next one meets the desktop the previous drops left.
    void dropsOnACluster() {
        const QRectF frame(0, 0, 1440, 875);
        QList<DropDecision::Tile> tiles;
        for (int i = 0; i < 6; ++i) {
            const WidgetSize size = i % 2 == 0 ? WidgetSize::small : WidgetSize::wide;
            const QSizeF pixels = nominalPixelSize(size);
            tiles.append({QUuid::createUuidV5(QUuid(), QString::number(i)), size,
                          QRectF(400 + (i % 3) * 230, 400 + (i / 3) * 110, pixels.width(),
                                 pixels.height())});
        }
        const QList<QPointF> drops{{410, 410}, {450, 420},  {600, 440}, {640, 470}, {20, 20},
                                   {-30, 400}, {1400, 800}, {865, 505}, {520, 455}, {700, 300}};
        QStringList lines;
        for (qsizetype n = 0; n < drops.size(); ++n) {
            const WidgetSize size = n % 2 == 0 ? WidgetSize::small : WidgetSize::wide;
            const QSizeF pixels = nominalPixelSize(size);
            const QRectF rect(drops.at(n), pixels);
            const auto d = DropDecision::decide(size, rect, tiles, frame);
            QString line = QStringLiteral("%1 %2 at %3 -> ")
                               .arg(n)
                               .arg(rawValue(size), point(rect.x(), rect.y()));
            if (d.outcome == DropDecision::Outcome::stack) {
                const auto onto = std::find_if(tiles.cbegin(), tiles.cend(),
                                               [&](const auto& t) { return t.id == d.stackOnto; });
                line += QStringLiteral("stack onto #%1").arg(onto - tiles.cbegin());
            } else {
                line += d.outcome == DropDecision::Outcome::slide
                            ? QStringLiteral("slide to ") + point(d.rect.x(), d.rect.y())
                            : QString::fromLatin1(
                                  d.outcome == DropDecision::Outcome::stay ? "stay" : "ignore");
            }
            lines << line;
            if (d.outcome != DropDecision::Outcome::stack) {
                tiles.append(
                    {QUuid::createUuidV5(QUuid(), QStringLiteral("drop%1").arg(n)), size, d.rect});
            }
        }
        test::compareWithGolden(QStringLiteral(TW_GOLDEN_DIR "/drops_on_a_cluster.txt"), lines);
    }

    void zones_data() {
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<StackRotation::Zone>("zone");
        // A tile 204 points wide; y runs up from its bottom edge.
        row("left arrow", QPointF(29, 100), StackRotation::Zone::previous);
        row("right arrow", QPointF(175, 100), StackRotation::Zone::next);
        row("dots", QPointF(100, 19), StackRotation::Zone::dots);
        row("arrows win over dots", QPointF(10, 5), StackRotation::Zone::previous);
        row("the tile's own", QPointF(30, 20), StackRotation::Zone::tile);
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
        row("one swipe left is one step forward",
            Events{pad(Phase::began, -10), pad(Phase::changed, -10), pad(Phase::changed, -10),
                   pad(Phase::changed, -30), pad(Phase::ended, 0)},
            Steps{0, 0, 1, 0, 0});
        row("a swipe right steps back", Events{pad(Phase::began, 12), pad(Phase::changed, 12)},
            Steps{0, -1});
        row("short swipes don't add up",
            Events{pad(Phase::began, -20), pad(Phase::ended, 0), pad(Phase::began, -20)},
            Steps{0, 0, 0});
        row("cancel resets",
            Events{pad(Phase::began, -20), pad(Phase::cancelled, 0), pad(Phase::began, -20),
                   pad(Phase::changed, -4)},
            Steps{0, 0, 0, 1});
        row("the larger axis counts", Events{pad(Phase::began, 5, -30)}, Steps{1});
        row("momentum never steps",
            Events{{0, -100, Phase::changed, true, {}}, {0, -100, Phase::none, true, {}}},
            Steps{0, 0});
        row("wheel down steps forward, clicks within 0.35 s merge",
            Events{wheel(-1, 0), wheel(-1, 200), wheel(-1, 350), wheel(-1, 351)},
            Steps{1, 0, 0, 1});
        row("wheel up steps back; zero is nothing",
            Events{wheel(0, 0), wheel(3, 10), wheel(0, 1000)}, Steps{0, -1, 0});
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

QTEST_GUILESS_MAIN(TestPlacement)
#include "tst_placement.moc"
