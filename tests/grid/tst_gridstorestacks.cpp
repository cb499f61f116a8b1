#include "GridFixture.h"
#include "LayoutDump.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;
using Instances = QList<WidgetInstance>;

namespace {
// The stack invariants: two members or more, one size, one position, indices 0 ... n − 1.
void verifyStacks(const GridStore& store) {
    QSet<QUuid> ids;
    for (const WidgetInstance& i : store.layout().instances) {
        QCOMPARE(i.stackID.has_value(), i.stackIndex.has_value());
        if (i.stackID) {
            ids.insert(*i.stackID);
        }
    }
    for (const QUuid& id : ids) {
        const Instances members = store.stackMembers(id);
        QVERIFY(members.size() >= 2);
        for (qsizetype n = 0; n < members.size(); ++n) {
            QCOMPARE(members.at(n).stackIndex, int(n));
            QCOMPARE(members.at(n).size, members.first().size);
            QCOMPARE(members.at(n).posX, members.first().posX);
            QCOMPARE(members.at(n).posY, members.first().posY);
        }
    }
}
} // namespace

class TestGridStoreStacks : public QObject {
    Q_OBJECT

    GridFixture f;
    std::unique_ptr<GridStore> store;

    QUuid id(int index) const { return store->layout().instances.at(index).id; }
    QStringList lines() const { return dump(store->layout()); }
    void run(const QString& operation) {
        const QStringList words = operation.split(QLatin1Char(' '));
        const auto tile = [&](int word) {
            const int index = words.at(word).toInt();
            return index < 0 ? QUuid::createUuid() : id(index);
        };
        const QString verb = words.first();
        if (verb == QLatin1String("group")) {
            store->groupIntoStack(tile(1), tile(2));
        } else if (verb == QLatin1String("out")) {
            store->removeFromStack(tile(1));
        } else if (verb == QLatin1String("remove")) {
            store->remove(tile(1));
        } else {
            store->updatePosition(tile(1), words.at(2).toDouble(), words.at(3).toDouble());
        }
    }

private Q_SLOTS:
    void init() {
        f.writeGrid(layoutOf(
            {at(makeInstance(QStringLiteral("clock"), WidgetSize::small, 0, 0), 100, 800),
             at(makeInstance(QStringLiteral("moon"), WidgetSize::small, 1, 0), 300, 800),
             at(makeInstance(QStringLiteral("battery"), WidgetSize::small, 2, 0), 500, 800),
             at(makeInstance(QStringLiteral("stocks"), WidgetSize::small, 3, 0), 700, 800),
             at(makeInstance(QStringLiteral("calendar"), WidgetSize::large, 4, 0), 900, 800)}));
        store = f.appStore();
    }
    void cleanup() {
        verifyStacks(*store);
        // Every operation is on disk as it is in memory.
        QCOMPARE(GridLayout::fromJsonText(f.readGrid()).value_or(GridLayout()).instances,
                 store->layout().instances);
        store.reset();
    }

    // Operations, one per entry: "group <dragged> <onto>", "out <tile>", "remove <tile>" or
    // "move <tile> <x> <y>", tiles by their index in the layout, -1 for an unknown id; then the
    // first lines of the layout.
    void operations_data() {
        QTest::addColumn<QStringList>("operations");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("two make a stack at the target")
            << strings({"group 1 0"})
            << strings(
                   {"clock small 0,0 stack A#0 at 100,800", "moon small 1,0 stack A#1 at 100,800"});
        QTest::newRow("a third goes to the end")
            << strings({"group 1 0", "group 2 1"})
            << strings({"clock small 0,0 stack A#0 at 100,800",
                        "moon small 1,0 stack A#1 at 100,800",
                        "battery small 2,0 stack A#2 at 100,800"});
        QTest::newRow("another size joins in the stack's size")
            << strings({"group 1 0", "group 4 0"})
            << strings({"clock small 0,0 stack A#0 at 100,800",
                        "moon small 1,0 stack A#1 at 100,800", "battery small 2,0 at 500,800",
                        "stocks small 3,0 at 700,800", "calendar small 4,0 stack A#2 at 100,800"});
        QTest::newRow("a stack dropped on another comes along whole")
            << strings({"group 1 0", "group 3 2", "group 2 0"})
            << strings({"clock small 0,0 stack A#0 at 100,800",
                        "moon small 1,0 stack A#1 at 100,800",
                        "battery small 2,0 stack A#2 at 100,800",
                        "stocks small 3,0 stack A#3 at 100,800"});
        // Taken out, a tile stands beside where it stood, on its row and the spacing (12) apart.
        QTest::newRow("taking one of two out dissolves the stack")
            << strings({"group 1 0", "out 1"})
            << strings({"clock small 0,0 at 100,800", "moon small 1,0 at 208,800"});
        QTest::newRow("taking one of three out renumbers")
            << strings({"group 1 0", "group 2 0", "out 0"})
            << strings({"clock small 0,0 at 208,800", "moon small 1,0 stack A#0 at 100,800",
                        "battery small 2,0 stack A#1 at 100,800"});
        QTest::newRow("a tile outside a stack moves alike")
            << strings({"out 0"}) << strings({"clock small 0,0 at 208,800"});
        QTest::newRow("removing a member repairs the stack")
            << strings({"group 1 0", "remove 0"}) << strings({"moon small 1,0 at 100,800"});
        QTest::newRow("a stack moves as one")
            << strings({"group 1 0", "move 1 400.5 600"})
            << strings({"clock small 0,0 stack A#0 at 400.5,600",
                        "moon small 1,0 stack A#1 at 400.5,600", "battery small 2,0 at 500,800"});
        QTest::newRow("a tile alone moves alone")
            << strings({"group 1 0", "move 2 1 2"})
            << strings({"clock small 0,0 stack A#0 at 100,800",
                        "moon small 1,0 stack A#1 at 100,800", "battery small 2,0 at 1,2"});
    }
    void operations() {
        QFETCH(QStringList, operations);
        QFETCH(QStringList, expected);
        for (const QString& operation : std::as_const(operations)) {
            run(operation);
        }
        QCOMPARE(lines().mid(0, expected.size()), expected);
    }

    void operationsThatChangeNothing_data() {
        QTest::addColumn<QString>("operation");
        QTest::newRow("grouping onto itself") << "group 0 0";
        QTest::newRow("grouping an unknown id") << "group -1 0";
        QTest::newRow("grouping within one stack") << "group 1 0";
        QTest::newRow("taking an unknown id out") << "out -1";
    }
    void operationsThatChangeNothing() {
        QFETCH(QString, operation);
        run(QStringLiteral("group 1 0"));
        const GridLayout before = store->layout();
        QSignalSpy changes(store.get(), &GridStore::layoutChanged);
        run(operation);
        QCOMPARE(store->layout(), before);
        QCOMPARE(changes.count(), 0);
    }

    void resizing_data() {
        QTest::addColumn<bool>("stack");
        QTest::addColumn<QList<int>>("indices");
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QStringList>("sizes");
        const QStringList untouched = strings({"small", "small", "small", "small", "large"});
        QTest::newRow("one tile") << false << QList<int>{2} << WidgetSize::wide
                                  << strings({"small", "small", "wide", "small", "large"});
        QTest::newRow("two tiles") << false << QList<int>{0, 4} << WidgetSize::tall
                                   << strings({"tall", "small", "small", "small", "tall"});
        QTest::newRow("one member takes its stack along")
            << true << QList<int>{1} << WidgetSize::large
            << strings({"large", "large", "small", "small", "large"});
        QTest::newRow("a stack by all its members")
            << true << QList<int>{0, 1} << WidgetSize::wide
            << strings({"wide", "wide", "small", "small", "large"});
        QTest::newRow("the size it has")
            << false << QList<int>{0} << WidgetSize::small << untouched;
        QTest::newRow("unknown id") << true << QList<int>{-1} << WidgetSize::wide << untouched;
        QTest::newRow("nothing") << false << QList<int>{} << WidgetSize::wide << untouched;
    }
    void resizing() {
        QFETCH(bool, stack);
        QFETCH(QList<int>, indices);
        QFETCH(WidgetSize, size);
        QFETCH(QStringList, sizes);
        if (stack) {
            store->groupIntoStack(id(1), id(0));
            f.pause();
        }
        const GridLayout before = store->layout();
        const bool couldUndo = store->canUndo();
        QList<QUuid> ids;
        for (int index : std::as_const(indices)) {
            ids.append(index < 0 ? QUuid::createUuid() : id(index));
        }
        QSignalSpy changes(store.get(), &GridStore::layoutChanged);
        store->setSize(ids, size);

        QStringList actual;
        for (const WidgetInstance& instance : store->layout().instances) {
            actual.append(rawValue(instance.size));
            // A resize never moves a tile on the desktop.
            const WidgetInstance& old = before.instances.at(actual.size() - 1);
            QCOMPARE(instance.posX, old.posX);
            QCOMPARE(instance.posY, old.posY);
        }
        QCOMPARE(actual, sizes);
        // The settings grid stays free of overlaps however large a tile grew.
        QSet<GridCell> occupied;
        for (const WidgetInstance& instance : store->layout().instances) {
            if (instance.col >= 0) {
                const QSet<GridCell> cells =
                    GridStore::cellsCovered(instance.col, instance.row, instance.size);
                QVERIFY(!occupied.intersects(cells));
                occupied.unite(cells);
            }
        }
        if (store->layout() == before) {
            QCOMPARE(changes.count(), 0);
            QCOMPARE(store->canUndo(), couldUndo);
            return;
        }
        const GridLayout after = store->layout();
        // One ordinary step: undo brings the old sizes back, redo the new, and what came before
        // the resize can still be undone.
        QVERIFY(store->undo());
        QCOMPARE(store->layout().instances, before.instances);
        QCOMPARE(store->canUndo(), couldUndo);
        QVERIFY(store->redo());
        QCOMPARE(store->layout().instances, after.instances);
        QVERIFY(store->undo());
        QCOMPARE(store->layout().instances, before.instances);
    }

    void stackSeconds() {
        store->groupIntoStack(id(1), id(0));
        const QUuid stack = *store->layout().instances.at(0).stackID;
        QCOMPARE(store->stackSeconds(stack), 0);
        QCOMPARE(store->stackSeconds(QUuid::createUuid()), 0);
        store->setStackSeconds(stack, 8);
        QCOMPARE(store->stackSeconds(stack), 8);
        for (const WidgetInstance& member : store->stackMembers(stack)) {
            QCOMPARE(member.setting(QStringLiteral("stackSeconds")), QStringLiteral("8"));
        }
        QVERIFY(store->stackMembers(QUuid::createUuid()).isEmpty());
    }

    void freeSpotCountsTilesOnThisScreenOnly() {
        // The first row is free only right of the calendar (900 + 204 + 12); a tile 408 high
        // (a large at "tileScale" 2) fits only under the small ones, at the margin.
        const auto spot = store->freeSpot(QStringLiteral("moon"), WidgetSize::small, std::nullopt);
        QCOMPARE(spot, QPointF(1116, 827));
        const auto scaled = store->freeSpot(QStringLiteral("clock"), WidgetSize::large,
                                            settingsOf({{"tileScale", "2"}}));
        QCOMPARE(scaled, QPointF(48, 800 - 96 - 12));
        const ScreenInfo right{QStringLiteral("r"), QStringLiteral("R"),
                               QRectF(1440, 0, 1920, 1080), QRectF(1440, 0, 1920, 1080), false};
        QCOMPARE(store->freeSpot(QStringLiteral("moon"), WidgetSize::small, std::nullopt, right),
                 QPointF(1488, 1032));
        const ScreenInfo tiny{QStringLiteral("t"), QStringLiteral("T"), QRectF(0, 0, 400, 400),
                              QRectF(0, 0, 400, 400), false};
        QVERIFY(!store->freeSpot(QStringLiteral("clock"), WidgetSize::large,
                                 settingsOf({{"tileScale", "2"}}), tiny));
        f.displays.setScreens({});
        QVERIFY(!store->freeSpot(QStringLiteral("moon"), WidgetSize::small, std::nullopt));
    }
};

QTEST_GUILESS_MAIN(TestGridStoreStacks)
#include "tst_gridstorestacks.moc"
