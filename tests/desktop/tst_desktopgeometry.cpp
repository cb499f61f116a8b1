#include "TestRows.h"
#include "desktop/DesktopGeometry.h"

#include <QTest>

using namespace tw;
using tw::test::row;

namespace {

// The main display 1920 × 1080 with a 40-point bar at the bottom; a second one to its right.
const QList<ScreenInfo> kTwo{
    {QStringLiteral("a"), QStringLiteral("A"), QRectF(0, 0, 1920, 1080), QRectF(0, 40, 1920, 1040),
     true},
    {QStringLiteral("b"), QStringLiteral("B"), QRectF(1920, 0, 1280, 1024),
     QRectF(1920, 0, 1280, 1024), false},
};

WidgetInstance at(int col, int row, WidgetSize size = WidgetSize::large) {
    WidgetInstance i;
    i.kind = QStringLiteral("clock");
    i.size = size;
    i.col = col;
    i.row = row;
    return i;
}

} // namespace

class tst_DesktopGeometry : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void tileBelongsToADisplay_data() {
        QTest::addColumn<QPointF>("topLeft");
        QTest::addColumn<QRectF>("frame");
        row("inside the main display", QPointF(100, 900), kTwo[0].visibleFrame);
        row("mostly on the second", QPointF(1900, 900), kTwo[1].visibleFrame);
        row("off both, nearest the second", QPointF(4000, 500), kTwo[1].visibleFrame);
        row("off both, nearest the main one", QPointF(-900, 500), kTwo[0].visibleFrame);
    }
    void tileBelongsToADisplay() {
        QFETCH(QPointF, topLeft);
        QTEST(DesktopGeometry::visibleFrame(kTwo, topLeft, QSizeF(204, 204)), "frame");
    }

    void originIsClampedIntoTheDisplay_data() {
        QTest::addColumn<QPointF>("topLeft");
        QTest::addColumn<QPointF>("origin");
        row("in place", QPointF(100, 900), QPointF(78, 900 - 204 - 22));
        // The corner is held: a tile reaching onto the second display stays where it was put.
        row("across the two displays", QPointF(1800, 900), QPointF(1778, 900 - 204 - 22));
        row("below the bar comes up to half", QPointF(100, 100), QPointF(78, 40 + 102 - 204 - 22));
        row("past the top comes down", QPointF(100, 2000), QPointF(78, 1080 - 204 - 22));
        row("off to the right ends half on the second", QPointF(9000, 500),
            QPointF(3200 - 102 - 22, 500 - 204 - 22));
        row("off to the left ends on the main one", QPointF(-900, 500),
            QPointF(-22, 500 - 204 - 22));
    }
    void originIsClampedIntoTheDisplay() {
        QFETCH(QPointF, topLeft);
        QTEST(DesktopGeometry::panelOrigin(kTwo, topLeft, QSizeF(204, 204)), "origin");
    }

    void noScreenStillGivesAFrame() {
        QCOMPARE(DesktopGeometry::mainVisibleFrame({}), DesktopGeometry::fallbackFrame());
        QCOMPARE(DesktopGeometry::visibleFrame({}, QPointF(5, 5), QSizeF(10, 10)),
                 DesktopGeometry::fallbackFrame());
    }

    // The logical cells give the first places; a cell taken by a placed tile falls back to the
    // free spot beside it; a stack gets one place.
    void firstPlaces() {
        const QRectF frame = kTwo[0].visibleFrame;
        WidgetInstance clock = at(0, 0);
        WidgetInstance calendar = at(2, 0);
        WidgetInstance weather = at(0, 2, WidgetSize::wide);
        auto places = DesktopGeometry::firstPlaces({clock, calendar, weather}, frame);
        QCOMPARE(places.value(clock.id), QPointF(48, 1080 - 48));
        QCOMPARE(places.value(calendar.id), QPointF(48 + 216, 1080 - 48));
        QCOMPARE(places.value(weather.id), QPointF(48, 1080 - 48 - 216));

        clock.posX = 60;
        clock.posY = 1030;
        const WidgetInstance newcomer = at(0, 0);
        places = DesktopGeometry::firstPlaces({clock, newcomer}, frame);
        QVERIFY(!places.contains(clock.id));
        QCOMPARE(places.value(newcomer.id), QPointF(60 + 204 + 12, 1080 - 48));

        WidgetInstance member = at(1, 1);
        calendar.stackID = member.stackID = QUuid::createUuid();
        places = DesktopGeometry::firstPlaces({calendar, member}, frame);
        QCOMPARE(places.keys(), QList{*calendar.stackID});
    }

    // The screen margin counts on both sides; one display with room is enough.
    void fitsSomeDisplay_data() {
        QTest::addColumn<QList<ScreenInfo>>("screens");
        QTest::addColumn<QSizeF>("tile");
        QTest::addColumn<bool>("fits");
        row("grand at 2.5 on the main one", kTwo, QSizeF(1050, 780), true);
        row("exactly the main one's height less margins", kTwo, QSizeF(300, 1040 - 96), true);
        row("a point taller than that", kTwo, QSizeF(300, 1040 - 95), false);
        row("too wide for the main, fits the second", kTwo, QSizeF(1100, 920), true);
        row("no display: the fallback", QList<ScreenInfo>{}, QSizeF(1344, 804), true);
        row("no display, too large", QList<ScreenInfo>{}, QSizeF(1345, 300), false);
    }
    void fitsSomeDisplay() {
        QFETCH(QList<ScreenInfo>, screens);
        QFETCH(QSizeF, tile);
        QFETCH(bool, fits);
        QCOMPARE(DesktopGeometry::fits(screens, tile), fits);
    }
};

QTEST_MAIN(tst_DesktopGeometry)
#include "tst_desktopgeometry.moc"
