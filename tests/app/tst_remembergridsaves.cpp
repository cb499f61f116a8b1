#include "../grid/GridFixture.h"
#include "app/RememberGridSaves.h"
#include "displays/ScreenTopologyWatcher.h"
#include "displays/TopologyMemory.h"

#include <QTest>

namespace tw {

class TestRememberGridSaves : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void savesAreRememberedOnTheDisplaysOfTheirMoment() {
        test::GridFixture f;
        ScreenTopologyWatcher watcher(f.displays, f.scheduler);
        watcher.start();
        TopologyMemory memory(watcher, f.clock);
        auto store = f.appStore();
        rememberGridSaves(*store, memory, f.displays);

        const auto clock =
            store->addFree(QStringLiteral("clock"), WidgetSize::large, {}, QPointF(1100, 850));
        QVERIFY(clock);
        QCOMPARE(memory.homes().value(clock->id).displayID, QStringLiteral("main"));
        QCOMPARE(memory.configurationCount(), 1);

        // A second display arrives: a save while the set settles is not remembered, and the
        // next one is remembered on the display that was not there at the start.
        const QList<ScreenInfo> two = f.displays.screens()
                                      << ScreenInfo{QStringLiteral("side"), QStringLiteral("Side"),
                                                    QRectF(1440, 0, 1920, 1080),
                                                    QRectF(1440, 0, 1920, 1080), false};
        f.displays.setScreens(two);
        const auto battery =
            store->addFree(QStringLiteral("battery"), WidgetSize::small, {}, QPointF(10, 700));
        QVERIFY(battery);
        QCOMPARE(memory.configurationCount(), 1);
        QVERIFY(!memory.homes().contains(battery->id));
        f.scheduler.advance(ScreenTopologyWatcher::settleDelay);
        store->updatePosition(battery->id, 2000, 700);
        QCOMPARE(memory.configurationCount(), 2);
        QCOMPARE(memory.homes().value(battery->id).displayID, QStringLiteral("side"));
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestRememberGridSaves)
#include "tst_remembergridsaves.moc"
