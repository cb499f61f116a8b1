#include "../grid/GridFixture.h"
#include "app/RememberGridSaves.h"
#include "desktop/DisplayFollower.h"
#include "displays/ScreenTopologyWatcher.h"
#include "displays/TopologyMemory.h"

#include <QTest>

namespace tw {

class TestRememberGridSaves : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Wired as the program wires them, grid saves give every tile a home on the displays of
    // their moment, and a settled change of the set places the tiles from their homes.
    void tilesFollowTheDisplaysFromWhatWasSaved() {
        test::GridFixture f;
        ScreenTopologyWatcher watcher(f.displays, f.scheduler);
        watcher.start();
        TopologyMemory memory(watcher, f.clock);
        auto store = f.appStore();
        rememberGridSaves(*store, memory, f.displays);
        const DisplayFollower follower({f.displays, f.scheduler, *store, &watcher, &memory});

        const auto clock =
            store->addFree(QStringLiteral("clock"), WidgetSize::large, {}, QPointF(1100, 850));
        QVERIFY(clock);
        QCOMPARE(memory.homes().value(clock->id).displayID, QStringLiteral("main"));
        QCOMPARE(memory.configurationCount(), 1);

        // A narrower main display and a second one arrive; a save while the set settles is not
        // remembered.
        f.displays.setScreens({{QStringLiteral("main"), QStringLiteral("Main"),
                                QRectF(0, 0, 1024, 768), QRectF(0, 0, 1024, 743), true},
                               {QStringLiteral("side"), QStringLiteral("Side"),
                                QRectF(1024, 0, 1920, 1080), QRectF(1024, 0, 1920, 1080), false}});
        const auto battery =
            store->addFree(QStringLiteral("battery"), WidgetSize::small, {}, QPointF(10, 700));
        QVERIFY(battery);
        QCOMPARE(memory.configurationCount(), 1);
        QVERIFY(!memory.homes().contains(battery->id));

        // Settled, the clock keeps its distance from the top right, and the save of the new
        // arrangement is remembered on the new set.
        f.scheduler.advance(ScreenTopologyWatcher::settleDelay);
        const auto moved = store->instance(clock->id);
        QVERIFY(moved);
        QCOMPARE(QPointF(*moved->posX, *moved->posY),
                 QPointF(1024 - (1440 - 1100), 743 - (875 - 850)));
        QCOMPARE(memory.configurationCount(), 2);
        QVERIFY(memory.homes().contains(battery->id));
        // Moved onto the display that was not there at the start, the battery has its home there.
        store->updatePosition(battery->id, 2000, 700);
        QCOMPARE(memory.homes().value(battery->id).displayID, QStringLiteral("side"));
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestRememberGridSaves)
#include "tst_remembergridsaves.moc"
