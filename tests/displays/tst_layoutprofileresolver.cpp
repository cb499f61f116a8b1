#include "DisplayFixtures.h"
#include "displays/LayoutProfileResolver.h"

#include <QFile>
#include <QTest>

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(std::optional<double>)

namespace tw {

using namespace test;

namespace {

const QDateTime stamp(QDate(2026, 3, 14), QTime(9, 0), Qt::UTC);

LayoutWidgetPlacement placementOf(const LayoutProfileSnapshot& snapshot, int n) {
    for (const LayoutWidgetPlacement& placement : snapshot.placements) {
        if (placement.widgetID == widgetId(n)) {
            return placement;
        }
    }
    qFatal("no placement for widget %d", n);
}

LayoutProfileSnapshot capture(const QList<WidgetInstance>& widgets,
                              const QList<LayoutDisplay>& displays,
                              const QList<LayoutWidgetPlacement>& earlier = {}) {
    return LayoutProfileResolver::snapshot(layoutOf(widgets), displays, earlier, stamp);
}

QString anchors(const LayoutWidgetPlacement& placement) {
    return (placement.anchorH ? toString(*placement.anchorH) : QStringLiteral("-")) +
           QLatin1Char('/') +
           (placement.anchorV ? toString(*placement.anchorV) : QStringLiteral("-"));
}

LayoutWidgetPlacement legacyPlacement(int n, const QString& displayID, double normalizedX,
                                      double normalizedY) {
    LayoutWidgetPlacement placement;
    placement.widgetID = widgetId(n);
    placement.displayID = displayID;
    placement.displayName = displayID;
    placement.normalizedX = normalizedX;
    placement.normalizedY = normalizedY;
    return placement;
}

// One line per widget: where it lands and on which display, for the golden files.
QString dump(const GridLayout& layout, const QList<LayoutDisplay>& displays) {
    QString text;
    for (const WidgetInstance& widget : layout.instances) {
        const auto display =
            LayoutProfileResolver::bestDisplay(widget, *widget.posX, *widget.posY, displays);
        text += QStringLiteral("%1 %2 x=%3 top=%4 on %5\n")
                    .arg(widget.order)
                    .arg(rawValue(widget.size))
                    .arg(LayoutProfileResolver::roundTripDecimal(*widget.posX))
                    .arg(LayoutProfileResolver::roundTripDecimal(*widget.posY))
                    .arg(display ? display->id : QStringLiteral("nothing"));
    }
    return text;
}

} // namespace

class TestLayoutProfileResolver : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void topologySignature_data() {
        QTest::addColumn<QList<LayoutDisplay>>("displays");
        QTest::addColumn<QString>("expected");
        QTest::newRow("none") << QList<LayoutDisplay>{} << QString();
        QTest::newRow("one") << QList<LayoutDisplay>{screenAt(QStringLiteral("A"), 0, 0, 1440, 900,
                                                              Role::main)}
                             << QStringLiteral("A@0.0,0.0,1440.0x900.0");
        QTest::newRow("sorted by text")
            << QList<LayoutDisplay>{screenAt(QStringLiteral("B"), 1440, 0, 2560, 1440),
                                    screenAt(QStringLiteral("A"), 0, 0, 1440, 900, Role::main)}
            << QStringLiteral("A@0.0,0.0,1440.0x900.0;B@1440.0,0.0,2560.0x1440.0");
        LayoutDisplay renamed = screenAt(QStringLiteral("B"), 1440, 0, 2560, 1440, Role::main,
                                         QStringLiteral("Another name"));
        renamed.visibleFrame.height -= 70;
        QTest::newRow("names, main and visible frames don't count")
            << QList<LayoutDisplay>{renamed, screenAt(QStringLiteral("A"), 0, 0, 1440, 900)}
            << QStringLiteral("A@0.0,0.0,1440.0x900.0;B@1440.0,0.0,2560.0x1440.0");
        QTest::newRow("fractions and negatives")
            << QList<LayoutDisplay>{screenAt(QStringLiteral("L"), -1512.5, 0.25, 1512, 982.5)}
            << QStringLiteral("L@-1512.5,0.25,1512.0x982.5");
    }
    void topologySignature() {
        QFETCH(QList<LayoutDisplay>, displays);
        QFETCH(QString, expected);
        QCOMPARE(LayoutProfileResolver::topologySignature(displays), expected);
    }

    void roundTripDecimal_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("expected");
        QTest::newRow("zero") << 0.0 << QStringLiteral("0.0");
        QTest::newRow("negative zero") << -0.0 << QStringLiteral("-0.0");
        QTest::newRow("whole") << 1440.0 << QStringLiteral("1440.0");
        QTest::newRow("tenth") << 0.1 << QStringLiteral("0.1");
        QTest::newRow("sum of tenths") << 0.1 + 0.2 << QStringLiteral("0.30000000000000004");
        QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << QStringLiteral("nan");
    }
    void roundTripDecimal() {
        QFETCH(double, value);
        QFETCH(QString, expected);
        QCOMPARE(LayoutProfileResolver::roundTripDecimal(value), expected);
    }

    void isUsableTopology_data() {
        QTest::addColumn<QList<LayoutDisplay>>("displays");
        QTest::addColumn<bool>("usable");
        const LayoutDisplay good = screenAt(QStringLiteral("A"), 0, 0, 1440, 900);
        QTest::newRow("empty") << QList<LayoutDisplay>{} << false;
        QTest::newRow("good") << QList<LayoutDisplay>{good} << true;
        QTest::newRow("width 1.0")
            << QList<LayoutDisplay>{good, screenAt(QStringLiteral("B"), 0, 0, 1.0, 900)} << false;
        QTest::newRow("width 1.01")
            << QList<LayoutDisplay>{screenAt(QStringLiteral("B"), 0, 0, 1.01, 1.01)} << true;
        QTest::newRow("visible height 0")
            << QList<LayoutDisplay>{withVisibleFrame(good, {0, 0, 1440, 0})} << false;
        QTest::newRow("NaN visible width")
            << QList<LayoutDisplay>{withVisibleFrame(good, {0, 0, std::nan(""), 900})} << false;
    }
    void isUsableTopology() {
        QFETCH(QList<LayoutDisplay>, displays);
        QFETCH(bool, usable);
        QCOMPARE(LayoutProfileResolver::isUsableTopology(displays), usable);
    }

    // Anchors on a 1000-point display: small tiles less than 24 points apart form one cluster,
    // anchored by its centre; a centre within 0.07 of the middle is centred.
    void anchorsOfClusters_data() {
        QTest::addColumn<QList<QPointF>>("tiles");
        QTest::addColumn<QStringList>("expected");
        const QString centred = QStringLiteral("center/center");
        QTest::newRow("23 across")
            << QList<QPointF>{{404, 548}, {523, 548}} << QStringList{centred, centred};
        QTest::newRow("24 across") << QList<QPointF>{{404, 548}, {524, 548}}
                                   << QStringList{centred, QStringLiteral("trailing/center")};
        QTest::newRow("23 down") << QList<QPointF>{{452, 596}, {452, 477}}
                                 << QStringList{centred, centred};
        QTest::newRow("24 down") << QList<QPointF>{{452, 596}, {452, 476}}
                                 << QStringList{centred, QStringLiteral("center/bottom")};
        QTest::newRow("0.07 right of middle") << QList<QPointF>{{522, 548}} << QStringList{centred};
        QTest::newRow("0.0701 right of middle")
            << QList<QPointF>{{522.1, 548}} << QStringList{QStringLiteral("trailing/center")};
        QTest::newRow("0.0701 left of middle")
            << QList<QPointF>{{381.9, 548}} << QStringList{QStringLiteral("leading/center")};
        QTest::newRow("far left") << QList<QPointF>{{0, 548}}
                                  << QStringList{QStringLiteral("leading/center")};
    }
    void anchorsOfClusters() {
        QFETCH(QList<QPointF>, tiles);
        QFETCH(QStringList, expected);
        QList<WidgetInstance> widgets;
        for (const QPointF& tile : std::as_const(tiles)) {
            widgets << widgetAt(int(widgets.size()) + 1, WidgetSize::small, tile.x(), tile.y());
        }
        const auto snapshot =
            capture(widgets, {screenAt(QStringLiteral("A"), 0, 0, 1000, 1000, Role::main)});
        QStringList actual;
        for (qsizetype n = 1; n <= widgets.size(); ++n) {
            actual << anchors(placementOf(snapshot, int(n)));
        }
        QCOMPARE(actual, expected);
    }

    // A group keeps its anchor's distance from the edges on a larger display of the same id.
    void remapKeepsTheAnchorsDistance_data() {
        QTest::addColumn<QSizeF>("target");
        QTest::addColumn<QList<WidgetInstance>>("widgets");
        QTest::addColumn<QString>("anchor");
        QTest::addColumn<QList<QPointF>>("moved");
        QTest::newRow("a corner group, 20 from the top right")
            << QSizeF(3840, 2160)
            << QList<WidgetInstance>{widgetAt(1, WidgetSize::large, 1696, 1060),
                                     widgetAt(2, WidgetSize::small, 1588, 1060)}
            << QStringLiteral("trailing/top") << QList<QPointF>{{3616, 2140}, {3508, 2140}};
        // The left one alone would be leading.
        QTest::newRow("a cluster across the middle moves as one")
            << QSizeF(3840, 1080)
            << QList<WidgetInstance>{widgetAt(1, WidgetSize::wide, 642, 1000),
                                     widgetAt(2, WidgetSize::wide, 858, 1000),
                                     widgetAt(3, WidgetSize::wide, 1074, 1000)}
            << QStringLiteral("center/top")
            << QList<QPointF>{{1602, 1000}, {1818, 1000}, {2034, 1000}};
    }
    void remapKeepsTheAnchorsDistance() {
        QFETCH(QSizeF, target);
        QFETCH(QList<WidgetInstance>, widgets);
        QFETCH(QString, anchor);
        QFETCH(QList<QPointF>, moved);
        const auto snapshot =
            capture(widgets, {screenAt(QStringLiteral("A"), 0, 0, 1920, 1080, Role::main)});
        const GridLayout remapped = LayoutProfileResolver::remap(
            layoutOf(widgets), snapshot.placements,
            {screenAt(QStringLiteral("A"), 0, 0, target.width(), target.height(), Role::main)});
        for (qsizetype n = 0; n < widgets.size(); ++n) {
            QCOMPARE(anchors(placementOf(snapshot, int(n) + 1)), anchor);
            const WidgetInstance& widget = remapped.instances.at(n);
            QCOMPARE(QPointF(*widget.posX, *widget.posY), moved.at(n));
        }
    }

    void widgetLargerThanTheDisplayClampsToTheTopLeft() {
        const LayoutDisplay display = screenAt(QStringLiteral("A"), 100, 50, 800, 600, Role::main);
        WidgetInstance grand = widgetAt(1, WidgetSize::grand, -300, 900);
        grand.settings = WidgetSettings{{QStringLiteral("tileScale"), QStringLiteral("2.5")}};
        const auto snapshot = capture({grand}, {display});
        const auto placement = placementOf(snapshot, 1);
        QCOMPARE(placement.normalizedX, 0.0);
        QCOMPARE(placement.normalizedY, 0.0);
        const auto point =
            LayoutProfileResolver::resolvedPoint(placement, display, grand.pixelSize());
        QCOMPARE(point.x, 100.0);
        QCOMPARE(point.topY, 650.0);

        LayoutWidgetPlacement legacy = placement;
        legacy.anchorH.reset();
        const auto fallback =
            LayoutProfileResolver::resolvedPoint(legacy, display, grand.pixelSize());
        QCOMPARE(fallback.x, 100.0);
        QCOMPARE(fallback.topY, 650.0);
    }

    void normalizedFallback_data() {
        QTest::addColumn<double>("fraction");
        QTest::addColumn<double>("expectedX");
        // A small tile on a 1096-wide display has 1000 points of travel.
        QTest::newRow("half") << 0.5 << 500.0;
        QTest::newRow("whole") << 1.0 << 1000.0;
        QTest::newRow("beyond") << 1.5 << 1000.0;
        QTest::newRow("negative") << -0.2 << 0.0;
        QTest::newRow("subnormal") << std::numeric_limits<double>::denorm_min() << 0.0;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << 0.0;
        QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << 0.0;
    }
    void normalizedFallback() {
        QFETCH(double, fraction);
        QFETCH(double, expectedX);
        const LayoutDisplay display = screenAt(QStringLiteral("A"), 0, 0, 1096, 1096);
        const auto point = LayoutProfileResolver::resolvedPoint(
            legacyPlacement(1, QStringLiteral("A"), fraction, fraction), display, QSizeF(96, 96));
        QCOMPARE(point.x, expectedX);
        QCOMPARE(point.topY, 1096.0 - expectedX);
    }

    void targetDisplay_data() {
        QTest::addColumn<QString>("displayID");
        QTest::addColumn<QString>("displayName");
        QTest::addColumn<bool>("wasOnMain");
        QTest::addColumn<std::optional<double>>("originX");
        QTest::addColumn<QString>("expected");
        const std::optional<double> none;
        const QString dell = QStringLiteral("DELL U2720Q");
        QTest::newRow("by id") << "dell-2" << dell << false << none << "dell-2";
        QTest::newRow("twins, nearer origin")
            << "gone"
            << "dell u2720q" << false << std::optional(1400.0) << "dell-2";
        QTest::newRow("twins, origins equally far: the first")
            << "gone" << dell << false << std::optional(-524.0) << "dell-1";
        QTest::newRow("twins, no origin, main") << "gone" << dell << true << none << "dell-1";
        QTest::newRow("twins, no origin, no main match")
            << "gone" << dell << false << none << "dell-1";
        QTest::newRow("one name, ignoring diacritics")
            << "gone"
            << "ecran integre" << false << none << "builtin";
        QTest::newRow("unknown name, main") << "gone"
                                            << "Projector" << true << none << "builtin";
        QTest::newRow("unknown name, not main") << "gone"
                                                << "Projector" << false << none << "dell-1";
        QTest::newRow("no name") << "gone"
                                 << "" << true << std::optional(1400.0) << "builtin";
    }
    void targetDisplay() {
        QFETCH(QString, displayID);
        QFETCH(QString, displayName);
        QFETCH(bool, wasOnMain);
        QFETCH(std::optional<double>, originX);
        QFETCH(QString, expected);
        // The first twin is left of the built-in display; the placement's origin lies nearer
        // the second.
        const QList<LayoutDisplay> displays{
            screenAt(QStringLiteral("dell-1"), -2560, 0, 2560, 1440, Role::secondary,
                     QStringLiteral("DELL U2720Q")),
            screenAt(QStringLiteral("builtin"), 0, 0, 1512, 982, Role::main,
                     QStringLiteral("Écran intégré")),
            screenAt(QStringLiteral("dell-2"), 1512, 0, 2560, 1440, Role::secondary,
                     QStringLiteral("DELL U2720Q"))};
        LayoutWidgetPlacement placement = legacyPlacement(1, displayID, 0, 0);
        placement.displayName = displayName;
        placement.wasOnMainDisplay = wasOnMain;
        if (originX) {
            placement.displayOriginX = *originX;
            placement.displayOriginY = 0.0;
        }
        const auto target = LayoutProfileResolver::targetDisplay(placement, displays);
        QVERIFY(target);
        QCOMPARE(target->id, expected);
        QVERIFY(!LayoutProfileResolver::targetDisplay(placement, {}));
    }

    void bestDisplay_data() {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("topY");
        QTest::addColumn<QString>("expected");
        // Two 1000-point displays side by side; a large tile is 204 points wide.
        QTest::newRow("mostly on the second") << 900.0 << 500.0 << "B";
        QTest::newRow("half and half") << 898.0 << 500.0 << "A";
        QTest::newRow("below both, equally near") << 898.0 << -500.0 << "A";
        QTest::newRow("below, nearer the second") << 1200.0 << -500.0 << "B";
        QTest::newRow("far right") << 5000.0 << 500.0 << "B";
    }
    void bestDisplay() {
        QFETCH(double, x);
        QFETCH(double, topY);
        QFETCH(QString, expected);
        const QList<LayoutDisplay> displays{
            screenAt(QStringLiteral("A"), 0, 0, 1000, 1000, Role::main),
            screenAt(QStringLiteral("B"), 1000, 0, 1000, 1000)};
        const WidgetInstance widget = widgetAt(1, WidgetSize::large, x, topY);
        QCOMPARE(LayoutProfileResolver::bestDisplay(widget, x, topY, displays)->id, expected);
        QVERIFY(!LayoutProfileResolver::bestDisplay(widget, x, topY, {}));
    }

    void parkedVisitorKeepsItsHomeWithinTwoPoints_data() {
        QTest::addColumn<double>("nudge");
        QTest::addColumn<bool>("keepsHome");
        QTest::newRow("in place") << 0.0 << true;
        QTest::newRow("1 point") << 1.0 << true;
        QTest::newRow("2 points") << 2.0 << true;
        QTest::newRow("3 points") << 3.0 << false;
    }
    void parkedVisitorKeepsItsHomeWithinTwoPoints() {
        QFETCH(double, nudge);
        QFETCH(bool, keepsHome);
        const LayoutDisplay laptop =
            screenAt(QStringLiteral("laptop"), 0, 0, 1512, 982, Role::main);
        const LayoutDisplay monitor = screenAt(QStringLiteral("monitor"), 1512, 0, 2560, 1440);
        const WidgetInstance onMonitor = widgetAt(1, WidgetSize::large, 3800, 1400);
        const auto home = placementOf(capture({onMonitor}, {laptop, monitor}), 1);
        QCOMPARE(home.displayID, QStringLiteral("monitor"));

        const GridLayout parked =
            LayoutProfileResolver::remap(layoutOf({onMonitor}), {home}, {laptop});
        WidgetInstance visitor = widgetIn(parked, 1);
        visitor.posX = *visitor.posX - nudge;
        const auto placement = placementOf(capture({visitor}, {laptop}, {home}), 1);
        QCOMPARE(placement == home, keepsHome);
        QCOMPARE(placement.displayID,
                 keepsHome ? QStringLiteral("monitor") : QStringLiteral("laptop"));
    }

    void unmovedWidgetKeepsItsAnchors() {
        const LayoutDisplay display = screenAt(QStringLiteral("A"), 0, 0, 1000, 1000, Role::main);
        const WidgetInstance alone = widgetAt(1, WidgetSize::small, 404, 548);
        const auto before = placementOf(capture({alone}, {display}), 1);
        QCOMPARE(anchors(before), QStringLiteral("center/center"));
        // A neighbour 12 points to the right pulls the cluster's centre out of the band; the
        // widget that did not move keeps what it had, the newcomer takes the cluster's anchors.
        WidgetInstance nearlyUnmoved = alone;
        nearlyUnmoved.posX = 404.5;
        const QList<WidgetInstance> widgets{nearlyUnmoved,
                                            widgetAt(2, WidgetSize::huge, 512.5, 548)};
        const auto after = capture(widgets, {display}, {before});
        QCOMPARE(placementOf(after, 1), before);
        QCOMPARE(anchors(placementOf(after, 2)), QStringLiteral("trailing/bottom"));
    }

    void widgetWithoutPositionKeepsWhatItHad() {
        const LayoutDisplay display = screenAt(QStringLiteral("A"), 0, 0, 1000, 1000, Role::main);
        const LayoutWidgetPlacement earlier = legacyPlacement(1, QStringLiteral("A"), 0.25, 0.5);
        const auto snapshot = capture({widgetAt(1, WidgetSize::small, std::nullopt, std::nullopt),
                                       widgetAt(2, WidgetSize::small, std::nullopt, 10.0),
                                       widgetAt(3, WidgetSize::small, std::nan(""), 10.0)},
                                      {display}, {earlier});
        QCOMPARE(snapshot.placements, QList<LayoutWidgetPlacement>{earlier});
        QCOMPARE(snapshot.capturedAt, stamp);
        QCOMPARE(snapshot.displays, QList<LayoutDisplay>{display});
    }

    void remapLeavesOthersAndOrderAlone() {
        const LayoutDisplay display = screenAt(QStringLiteral("A"), 0, 0, 1000, 1000, Role::main);
        const GridLayout layout = layoutOf({widgetAt(3, WidgetSize::small, 5000, 5000),
                                            widgetAt(1, WidgetSize::small, 10, 10),
                                            widgetAt(2, WidgetSize::small, std::nullopt, 7)});
        const auto placement = legacyPlacement(1, QStringLiteral("A"), 1.0, 1.0);
        const GridLayout remapped = LayoutProfileResolver::remap(layout, {placement}, {display});
        QCOMPARE(remapped.instances.size(), 3);
        QCOMPARE(remapped.instances[0], layout.instances[0]);
        QCOMPARE(remapped.instances[2], layout.instances[2]);
        QCOMPARE(*remapped.instances[1].posX, 904.0);
        QCOMPARE(*remapped.instances[1].posY, 96.0);
        QCOMPARE(LayoutProfileResolver::remap(layout, {placement}, {}), layout);
    }

    void remapFallsBackToTheAbsolutePointWhenTheDisplayIsNonsense() {
        const LayoutDisplay broken = withVisibleFrame(
            screenAt(QStringLiteral("A"), 0, 0, 1000, 1000), {std::nan(""), 0, 1000, 1000});
        LayoutWidgetPlacement placement = legacyPlacement(1, QStringLiteral("A"), 0.5, 0.5);
        placement.absoluteX = 123;
        placement.absoluteTopY = 456;
        const GridLayout remapped = LayoutProfileResolver::remap(
            layoutOf({widgetAt(1, WidgetSize::small, 0, 0)}), {placement}, {broken});
        QCOMPARE(*remapped.instances[0].posX, 123.0);
        QCOMPARE(*remapped.instances[0].posY, 548.0);
    }

    void resolveOnTheSameSetGivesTheCapturedPositions() {
        const LayoutDisplay display = screenAt(QStringLiteral("A"), 0, 0, 1000, 1000, Role::main);
        const QList<WidgetInstance> widgets{widgetAt(1, WidgetSize::small, -4000, 7000)};
        const auto snapshot = capture(widgets, {display});
        QCOMPARE(LayoutProfileResolver::resolve(snapshot, {display}), layoutOf(widgets));
        QCOMPARE(LayoutProfileResolver::resolve(snapshot, {}), layoutOf(widgets));
        const LayoutDisplay moved = screenAt(QStringLiteral("A"), 0, 0, 1200, 1000, Role::main);
        const GridLayout resolved = LayoutProfileResolver::resolve(snapshot, {moved});
        QCOMPARE(*resolved.instances[0].posX, 0.0);
        QCOMPARE(*resolved.instances[0].posY, 1000.0);
    }

    void upgradedGivesAnchorsWhereTheDisplayIsKnown() {
        const LayoutDisplay known = screenAt(QStringLiteral("A"), 0, 0, 1000, 1000, Role::main);
        LayoutWidgetPlacement onKnown = legacyPlacement(1, QStringLiteral("A"), 1, 0);
        onKnown.absoluteX = 880;
        onKnown.absoluteTopY = 980;
        LayoutWidgetPlacement onAbsent = legacyPlacement(2, QStringLiteral("gone"), 0.5, 0.5);
        LayoutWidgetPlacement notInLayout = legacyPlacement(3, QStringLiteral("A"), 0.5, 0.5);
        LayoutProfileSnapshot snapshot;
        snapshot.layout = layoutOf(
            {widgetAt(1, WidgetSize::small, 880, 980), widgetAt(2, WidgetSize::small, 10, 10)});
        snapshot.displays = {known};
        snapshot.placements = {onKnown, onAbsent, notInLayout};

        const LayoutProfileSnapshot upgraded = LayoutProfileResolver::upgraded(snapshot);
        QCOMPARE(upgraded.placements.size(), 3);
        QCOMPARE(anchors(upgraded.placements[0]), QStringLiteral("trailing/top"));
        QCOMPARE(*upgraded.placements[0].offsetX, 24.0);
        QCOMPARE(*upgraded.placements[0].offsetY, 20.0);
        QCOMPARE(upgraded.placements[1], onAbsent);
        QCOMPARE(upgraded.placements[2], notInLayout);
        QCOMPARE(LayoutProfileResolver::upgraded(upgraded), upgraded);

        // Before the upgrade the legacy record resolves by its fractions.
        const LayoutDisplay wider = screenAt(QStringLiteral("A"), 0, 0, 2000, 1000, Role::main);
        QCOMPARE(*LayoutProfileResolver::remap(snapshot.layout, snapshot.placements, {wider})
                      .instances[0]
                      .posX,
                 1904.0);
        QCOMPARE(*LayoutProfileResolver::resolve(snapshot, {wider}).instances[0].posX, 1880.0);
    }

    // Nine widgets on three displays, resolved on three other sets; the dump is the record
    // (TW_UPDATE_GOLDEN=1 rewrites it).
    void threeDisplaysGolden_data() {
        QTest::addColumn<QList<LayoutDisplay>>("target");
        QTest::addColumn<QString>("golden");
        const LayoutDisplay laptop = screenAt(QStringLiteral("laptop"), 0, 0, 1512, 982, Role::main,
                                              QStringLiteral("Built-in Retina Display"));
        QTest::newRow("laptop alone")
            << QList<LayoutDisplay>{withVisibleFrame(laptop, {0, 0, 1512, 950})}
            << "three-displays-laptop-alone.txt";
        QTest::newRow("monitors swapped")
            << QList<LayoutDisplay>{laptop,
                                    screenAt(QStringLiteral("right"), -2560, 0, 2560, 1440,
                                             Role::secondary, QStringLiteral("LG HDR 4K")),
                                    screenAt(QStringLiteral("left"), 1512, -300, 1920, 1080,
                                             Role::secondary, QStringLiteral("DELL P2419H"))}
            << "three-displays-swapped.txt";
        QTest::newRow("new ids, same names")
            << QList<LayoutDisplay>{laptop,
                                    screenAt(QStringLiteral("left-2"), -1920, 0, 1920, 1080,
                                             Role::secondary, QStringLiteral("dell p2419h")),
                                    screenAt(QStringLiteral("right-2"), 1512, 0, 3840, 2160,
                                             Role::secondary, QStringLiteral("LG HDR 4K"))}
            << "three-displays-new-ids.txt";
    }
    void threeDisplaysGolden() {
        QFETCH(QList<LayoutDisplay>, target);
        QFETCH(QString, golden);
        const QList<LayoutDisplay> source{screenAt(QStringLiteral("laptop"), 0, 0, 1512, 982,
                                                   Role::main,
                                                   QStringLiteral("Built-in Retina Display")),
                                          screenAt(QStringLiteral("left"), -1920, 0, 1920, 1080,
                                                   Role::secondary, QStringLiteral("DELL P2419H")),
                                          screenAt(QStringLiteral("right"), 1512, 0, 2560, 1440,
                                                   Role::secondary, QStringLiteral("LG HDR 4K"))};
        const GridLayout layout = layoutOf({
            widgetAt(1, WidgetSize::large, 24, 958),
            widgetAt(2, WidgetSize::small, 240, 958),
            widgetAt(3, WidgetSize::wide, 650, 500),
            widgetAt(4, WidgetSize::huge, -1900, 1060),
            widgetAt(5, WidgetSize::banner, -1100, 140),
            widgetAt(6, WidgetSize::grand, 3600, 1420),
            widgetAt(7, WidgetSize::tall, 3852, 1420),
            widgetAt(8, WidgetSize::panorama, 2600, 300),
            widgetAt(9, WidgetSize::small, 1400, 400),
        });
        const auto snapshot = LayoutProfileResolver::snapshot(layout, source, {}, stamp);
        const QString actual = dump(LayoutProfileResolver::resolve(snapshot, target), target);

        const QString path = QStringLiteral(TW_GOLDEN_DIR "/") + golden;
        if (qEnvironmentVariableIsSet("TW_UPDATE_GOLDEN")) {
            QFile out(path);
            QVERIFY(out.open(QIODevice::WriteOnly));
            out.write(actual.toUtf8());
        }
        QFile expected(path);
        QVERIFY2(expected.open(QIODevice::ReadOnly), qPrintable(path));
        QCOMPARE(actual, QString::fromUtf8(expected.readAll()));
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestLayoutProfileResolver)
#include "tst_layoutprofileresolver.moc"
