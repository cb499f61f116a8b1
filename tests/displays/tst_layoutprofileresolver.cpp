#include "DisplayFixtures.h"
#include "GoldenFile.h"
#include "TestRows.h"
#include "displays/LayoutProfileResolver.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace tw {

using namespace test;
using Resolver = LayoutProfileResolver;

namespace {

const QDateTime stamp(QDate(2026, 3, 14), QTime(9, 0), Qt::UTC);
const QString square = QStringLiteral("A@0,0,1000x1000*");

LayoutProfileSnapshot capture(const GridLayout& layout, const QString& displays,
                              const QList<LayoutWidgetPlacement>& earlier = {}) {
    return Resolver::snapshot(layout, displaysOf(displays), earlier, stamp);
}

LayoutWidgetPlacement placementOf(const LayoutProfileSnapshot& snapshot, int n) {
    for (const LayoutWidgetPlacement& placement : snapshot.placements) {
        if (placement.widgetID == widgetId(n)) {
            return placement;
        }
    }
    qFatal("no placement for widget %d", n);
}

QString anchors(const LayoutWidgetPlacement& p) {
    const auto text = [](const auto& a) { return a ? toString(*a) : QStringLiteral("-"); };
    return text(p.anchorH) + QLatin1Char('/') + text(p.anchorV);
}

LayoutWidgetPlacement legacy(int n, const QString& displayID, double fraction) {
    LayoutWidgetPlacement placement;
    placement.widgetID = widgetId(n);
    placement.displayID = placement.displayName = displayID;
    placement.normalizedX = placement.normalizedY = fraction;
    return placement;
}

// Widgets captured on one set and resolved on another: name, from, widgets, to ("" for the same
// set). On a 1000-point display small tiles less than 24 points apart form one cluster anchored
// by its centre, and a centre within 0.07 of the middle is centred.
const char* const scenarios[][4] = {
    {"23 across", "A@0,0,1000x1000*", "1 small 404,548; 2 small 523,548", ""},
    {"24 across", "A@0,0,1000x1000*", "1 small 404,548; 2 small 524,548", ""},
    {"23 down", "A@0,0,1000x1000*", "1 small 452,596; 2 small 452,477", ""},
    {"24 down", "A@0,0,1000x1000*", "1 small 452,596; 2 small 452,476", ""},
    {"0.07 right of middle", "A@0,0,1000x1000*", "1 small 522,548", ""},
    {"0.0701 right of middle", "A@0,0,1000x1000*", "1 small 522.1,548", ""},
    {"0.0701 left of middle", "A@0,0,1000x1000*", "1 small 381.9,548", ""},
    {"far left", "A@0,0,1000x1000*", "1 small 0,548", ""},
    {"a corner group keeps its distance on a larger display", "A@0,0,1920x1080*",
     "1 large 1696,1060; 2 small 1588,1060", "A@0,0,3840x2160*"},
    {"a cluster across the middle moves as one (the left one alone would be leading)",
     "A@0,0,1920x1080*", "1 wide 642,1000; 2 wide 858,1000; 3 wide 1074,1000", "A@0,0,3840x1080*"},
    {"larger than the display: to the top left", "A@100,50,800x600*", "1 grand -300,900 x2.5",
     "A@100,50,801x600*"},
    {"off the display, on the same set: as captured", "A@0,0,1000x1000*", "1 small -4000,7000",
     "A@0,0,1000x1000*^10"},
    {"off the display, on another set: clamped", "A@0,0,1000x1000*", "1 small -4000,7000",
     "A@0,0,1200x1000*"},
    {"mostly on the second", "A@0,0,1000x1000*;B@1000,0,1000x1000", "1 large 900,500", ""},
    {"half and half: the first", "A@0,0,1000x1000*;B@1000,0,1000x1000", "1 large 898,500", ""},
    {"below both, equally near: the first", "A@0,0,1000x1000*;B@1000,0,1000x1000",
     "1 large 898,-500", ""},
    {"below, nearer the second", "A@0,0,1000x1000*;B@1000,0,1000x1000", "1 large 1200,-500", ""},
    {"far right", "A@0,0,1000x1000*;B@1000,0,1000x1000", "1 large 5000,500", ""},
};

// Nine widgets on three displays, resolved on three other sets.
const char* const threeDisplays = "laptop@0,0,1512x982*=Built-in Retina Display;"
                                  "left@-1920,0,1920x1080=DELL P2419H;"
                                  "right@1512,0,2560x1440=LG HDR 4K";
const char* const nineWidgets = "1 large 24,958; 2 small 240,958; 3 wide 650,500;"
                                "4 huge -1900,1060; 5 banner -1100,140; 6 grand 3600,1420;"
                                "7 tall 3852,1420; 8 panorama 2600,300; 9 small 1400,400";
const char* const threeTargets[][2] = {
    {"laptop alone", "laptop@0,0,1512x982*^950=Built-in Retina Display"},
    {"monitors swapped", "laptop@0,0,1512x982*=Built-in Retina Display;"
                         "right@-2560,0,2560x1440=LG HDR 4K;left@1512,-300,1920x1080=DELL P2419H"},
    {"new ids, same names", "laptop@0,0,1512x982*=Built-in Retina Display;"
                            "left-2@-1920,0,1920x1080=dell p2419h;"
                            "right-2@1512,0,3840x2160=LG HDR 4K"},
};

// Per widget: the placement captured (display, anchors, offsets, fractions), then where it
// resolves and on which display it lands there.
QStringList dump(const QString& name, const QString& from, const QString& widgets,
                 const QString& to) {
    const GridLayout layout = layoutOf(widgets);
    const auto snapshot = capture(layout, from);
    const QList<LayoutDisplay> target = displaysOf(to.isEmpty() ? from : to);
    const GridLayout resolved = Resolver::resolve(snapshot, target);
    QStringList lines{QStringLiteral("# ") + name};
    for (const WidgetInstance& widget : resolved.instances) {
        const auto p = placementOf(snapshot, widget.order);
        const auto on = Resolver::bestDisplay(widget, *widget.posX, *widget.posY, target);
        lines << QStringLiteral("%1 %2: %3 %4 %5,%6 (%7,%8) -> %9,%10 on %11")
                     .arg(widget.order)
                     .arg(rawValue(widget.size), p.displayID, anchors(p))
                     .arg(p.offsetX.value_or(-1))
                     .arg(p.offsetY.value_or(-1))
                     .arg(p.normalizedX)
                     .arg(p.normalizedY)
                     .arg(Resolver::roundTripDecimal(*widget.posX),
                          Resolver::roundTripDecimal(*widget.posY), on->id);
    }
    return lines;
}

} // namespace

class TestLayoutProfileResolver : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The signature is "id@x,y,wxh" per display, sorted; usable is not empty, with every frame
    // and visible frame wider and taller than one point.
    void signatureAndUsable_data() {
        QTest::addColumn<QString>("displays");
        QTest::addColumn<QString>("signature");
        QTest::addColumn<bool>("usable");
        row("none", "", "", false);
        row("sorted by text", "B@1440,0,2560x1440;A@0,0,1440x900*",
            "A@0.0,0.0,1440.0x900.0;B@1440.0,0.0,2560.0x1440.0", true);
        row("names, main and visible frames don't count",
            "B@1440,0,2560x1440*^1370=Another name;A@0,0,1440x900",
            "A@0.0,0.0,1440.0x900.0;B@1440.0,0.0,2560.0x1440.0", true);
        row("fractions and negatives", "L@-1512.5,0.25,1512x982.5", "L@-1512.5,0.25,1512.0x982.5",
            true);
        row("width 1.0", "B@0,0,1x900", "B@0.0,0.0,1.0x900.0", false);
        row("width 1.01", "B@0,0,1.01x1.01", "B@0.0,0.0,1.01x1.01", true);
        row("visible height 0", "A@0,0,1440x900^0", "A@0.0,0.0,1440.0x900.0", false);
        row("NaN visible height", "A@0,0,1440x900^nan", "A@0.0,0.0,1440.0x900.0", false);
        row("one unusable of two", "A@0,0,1440x900;B@0,0,1x900",
            "A@0.0,0.0,1440.0x900.0;B@0.0,0.0,1.0x900.0", false);
    }
    void signatureAndUsable() {
        QFETCH(QString, displays);
        QTEST(Resolver::topologySignature(displaysOf(displays)), "signature");
        QTEST(Resolver::isUsableTopology(displaysOf(displays)), "usable");
    }

    void roundTripDecimal_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("expected");
        row("zero", 0.0, "0.0");
        row("negative zero", -0.0, "-0.0");
        row("sum of tenths", 0.1 + 0.2, "0.30000000000000004");
        row("NaN", std::numeric_limits<double>::quiet_NaN(), "nan");
    }
    void roundTripDecimal() {
        QFETCH(double, value);
        QTEST(Resolver::roundTripDecimal(value), "expected");
    }

    // The captures and resolutions above, and the nine widgets on three displays, against the
    // reviewed record (TW_UPDATE_GOLDEN=1 rewrites it).
    void placementsGolden() {
        QStringList lines;
        for (const auto& s : scenarios) {
            lines << dump(QString::fromUtf8(s[0]), QString::fromUtf8(s[1]), QString::fromUtf8(s[2]),
                          QString::fromUtf8(s[3]));
        }
        for (const auto& target : threeTargets) {
            lines << dump(QStringLiteral("three displays: ") + QString::fromUtf8(target[0]),
                          QString::fromUtf8(threeDisplays), QString::fromUtf8(nineWidgets),
                          QString::fromUtf8(target[1]));
        }
        compareWithGolden(QStringLiteral(TW_GOLDEN_DIR "/placements.txt"), lines);
        const WidgetInstance any = layoutOf(QStringLiteral("1 small 0,0")).instances.first();
        QVERIFY(!Resolver::bestDisplay(any, 0, 0, {}));
    }

    // Records from before anchors: a fraction of the free travel, clamped to 0 ... 1, where a
    // small tile on a 1096-point display has 1000 points of travel.
    void fractionsOfTravel_data() {
        QTest::addColumn<double>("fraction");
        QTest::addColumn<double>("width");
        QTest::addColumn<QString>("expected");
        row("half", 0.5, 96.0, "500,596");
        row("whole", 1.0, 96.0, "1000,96");
        row("beyond", 1.5, 96.0, "1000,96");
        row("negative", -0.2, 96.0, "0,1096");
        row("infinite", std::numeric_limits<double>::infinity(), 96.0, "0,1096");
        row("NaN", std::numeric_limits<double>::quiet_NaN(), 96.0, "0,1096");
        row("wider than the display", 0.5, 2000.0, "0,1096");
    }
    void fractionsOfTravel() {
        QFETCH(double, fraction);
        QFETCH(double, width);
        const auto point = Resolver::resolvedPoint(
            legacy(1, QStringLiteral("A"), fraction),
            displaysOf(QStringLiteral("A@0,0,1096x1096")).first(), QSizeF(width, width));
        QTEST(QStringLiteral("%1,%2").arg(point.x).arg(point.topY), "expected");
    }

    // The placement as "id|name|main|origin x" ("" for none), on two twins and a built-in
    // display; the first twin is left of the built-in one, the origin 1400 nearer the second.
    void targetDisplay_data() {
        QTest::addColumn<QString>("placement");
        QTest::addColumn<QString>("expected");
        row("by id", "dell-2|DELL U2720Q||", "dell-2");
        row("twins, nearer origin", "gone|dell u2720q||1400", "dell-2");
        row("twins, origins equally far: the first", "gone|DELL U2720Q||-524", "dell-1");
        row("twins, no origin, no main match", "gone|DELL U2720Q||", "dell-1");
        row("one name, ignoring diacritics", "gone|ecran integre||", "builtin");
        row("unknown name, main", "gone|Projector|main|", "builtin");
        row("unknown name, not main", "gone|Projector||", "dell-1");
        row("no name", "gone||main|1400", "builtin");
    }
    void targetDisplay() {
        QFETCH(QString, placement);
        const QStringList fields = placement.split(QLatin1Char('|'));
        LayoutWidgetPlacement p = legacy(1, fields.at(0), 0);
        p.displayName = fields.at(1);
        p.wasOnMainDisplay = !fields.at(2).isEmpty();
        if (!fields.at(3).isEmpty()) {
            p.displayOriginX = fields.at(3).toDouble();
            p.displayOriginY = 0.0;
        }
        const auto displays = displaysOf(QStringLiteral(
            "dell-1@-2560,0,2560x1440=DELL U2720Q;builtin@0,0,1512x982*=Écran intégré;"
            "dell-2@1512,0,2560x1440=DELL U2720Q"));
        QTEST(Resolver::targetDisplay(p, displays).value_or(LayoutDisplay()).id, "expected");
        QVERIFY(!Resolver::targetDisplay(p, {}));
    }

    void unmovedWidgetKeepsItsAnchors() {
        const auto before =
            placementOf(capture(layoutOf(QStringLiteral("1 small 404,548")), square), 1);
        QCOMPARE(anchors(before), QStringLiteral("center/center"));
        // A neighbour 12 points to the right pulls the cluster's centre out of the band; the
        // widget that did not move keeps what it had, the newcomer takes the cluster's anchors.
        const auto after = capture(layoutOf(QStringLiteral("1 small 404.5,548; 2 huge 512.5,548")),
                                   square, {before});
        QCOMPARE(placementOf(after, 1), before);
        QCOMPARE(anchors(placementOf(after, 2)), QStringLiteral("trailing/bottom"));
    }

    void widgetWithoutPositionKeepsWhatItHad() {
        const LayoutWidgetPlacement earlier = legacy(1, QStringLiteral("A"), 0.25);
        GridLayout layout = layoutOf(QStringLiteral("1 small -; 2 small -; 3 small 0,10"));
        layout.instances[1].posY = 10.0;
        layout.instances[2].posX = std::nan("");
        const auto snapshot = capture(layout, square, {earlier});
        QCOMPARE(snapshot.placements, QList<LayoutWidgetPlacement>{earlier});
        QCOMPARE(snapshot.capturedAt, stamp);
        QCOMPARE(snapshot.displays, displaysOf(square));
    }

    void remapMovesOnlyWidgetsWithAPlacement() {
        const GridLayout layout =
            layoutOf(QStringLiteral("3 small 5000,5000; 1 small 10,10; 2 small -"));
        const auto placement = legacy(1, QStringLiteral("A"), 1.0);
        QCOMPARE(positionsIn(Resolver::remap(layout, {placement}, displaysOf(square))),
                 QStringLiteral("5000,5000; 904,96; -"));
        QCOMPARE(Resolver::remap(layout, {placement}, {}), layout);
        QCOMPARE(Resolver::resolve(capture(layout, square), {}), layout);
        // A display whose visible frame is nonsense: the absolute point captured.
        auto broken = displaysOf(square);
        broken[0].visibleFrame.x = std::nan("");
        LayoutWidgetPlacement absolute = placement;
        absolute.absoluteX = 123;
        absolute.absoluteTopY = 456;
        QCOMPARE(positionsIn(Resolver::remap(layout, {absolute}, broken)),
                 QStringLiteral("5000,5000; 123,96; -"));
    }

    void upgradedGivesAnchorsWhereTheDisplayIsKnown() {
        LayoutWidgetPlacement onKnown = legacy(1, QStringLiteral("A"), 0);
        onKnown.normalizedX = 1;
        onKnown.absoluteX = 880;
        onKnown.absoluteTopY = 980;
        const LayoutWidgetPlacement onAbsent = legacy(2, QStringLiteral("gone"), 0.5);
        const LayoutWidgetPlacement notInLayout = legacy(3, QStringLiteral("A"), 0.5);
        LayoutProfileSnapshot snapshot;
        snapshot.layout = layoutOf(QStringLiteral("1 small 880,980; 2 small 10,10"));
        snapshot.displays = displaysOf(square);
        snapshot.placements = {onKnown, onAbsent, notInLayout};

        const LayoutProfileSnapshot upgraded = Resolver::upgraded(snapshot);
        QCOMPARE(upgraded.placements.size(), 3);
        QCOMPARE(anchors(upgraded.placements[0]), QStringLiteral("trailing/top"));
        QCOMPARE(*upgraded.placements[0].offsetX, 24.0);
        QCOMPARE(*upgraded.placements[0].offsetY, 20.0);
        QCOMPARE(upgraded.placements.mid(1), snapshot.placements.mid(1));
        QCOMPARE(Resolver::upgraded(upgraded), upgraded);

        // Before the upgrade the legacy record resolves by its fractions.
        const auto wider = displaysOf(QStringLiteral("A@0,0,2000x1000*"));
        QCOMPARE(*Resolver::remap(snapshot.layout, snapshot.placements, wider).instances[0].posX,
                 1904.0);
        QCOMPARE(*Resolver::resolve(snapshot, wider).instances[0].posX, 1880.0);
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestLayoutProfileResolver)
#include "tst_layoutprofileresolver.moc"
