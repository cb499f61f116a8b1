// The wiring the composition root does: every save of the application's grid is remembered on
// the displays of the moment, except while they settle.
#include "../grid/GridFixture.h"
#include "displays/ScreenTopologyWatcher.h"
#include "displays/TopologyMemory.h"

#include <QTest>

using namespace std::chrono_literals;

namespace tw {

class TestGridSaveTopology : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void gridSavesAreRememberedOutsideSettling() {
        test::GridFixture f;
        ScreenTopologyWatcher watcher(f.displays, f.scheduler);
        watcher.start();
        TopologyMemory memory(watcher, f.clock);
        QCOMPARE(memory.filePath(), f.dir.filePath(QStringLiteral("topology.json")));
        auto store = f.appStore();
        connect(store.get(), &GridStore::saved, &memory, [&](const GridLayout& layout) {
            memory.remember(layout, LayoutDisplay::currentDisplays(f.displays));
        });
        // What the desktop controller does with a settled change.
        connect(&watcher, &ScreenTopologyWatcher::settled, store.get(),
                [&](const ScreenTopologyWatcher::Change& change) {
                    if (!change.topologyChanged) {
                        return;
                    }
                    if (auto layout = memory.layoutForSettled(change.displays, store->layout())) {
                        store->replaceLayout(*layout);
                    }
                });

        const auto clock =
            store->addFree(QStringLiteral("clock"), WidgetSize::large, {}, QPointF(1100, 850));
        QVERIFY(clock);
        QVERIFY(QFile::exists(f.dir.filePath(QStringLiteral("topology.json"))));
        QVERIFY(QFile::exists(f.dir.filePath(QStringLiteral("topology.homes.json"))));
        QCOMPARE(memory.homes().value(clock->id).displayID, QStringLiteral("main"));
        QCOMPARE(memory.configurationCount(), 1);

        // A narrower main display arrives; a save inside the settle cycle is not remembered.
        f.displays.setScreens({{QStringLiteral("main"), QStringLiteral("Main"),
                                QRectF(0, 0, 1024, 768), QRectF(0, 0, 1024, 743), true}});
        const auto later =
            store->addFree(QStringLiteral("battery"), WidgetSize::small, {}, QPointF(10, 700));
        QVERIFY(later);
        QCOMPARE(memory.configurationCount(), 1);
        QVERIFY(!memory.homes().contains(later->id));

        // The settled change moves the clock from its home, and the save that follows the
        // replacement is remembered on the new set.
        f.scheduler.advance(2s);
        QCOMPARE(memory.configurationCount(), 2);
        QVERIFY(memory.homes().contains(later->id));
        const auto moved = store->instance(clock->id);
        QVERIFY(moved);
        QCOMPARE(*moved->posX, 1024.0 - (1440.0 - 1100.0 - 204.0) - 204.0);
        QCOMPARE(*moved->posY, 743.0 - (875.0 - 850.0));
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestGridSaveTopology)
#include "tst_gridsavetopology.moc"
