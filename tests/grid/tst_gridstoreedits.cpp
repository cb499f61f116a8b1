#include "GridFixture.h"
#include "TestRows.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;
using Gaps = QList<int>;

namespace {
// After every operation: a stack has two members or more, of one size, at one position, with
// indices 0 ... n − 1, and the settings grid is free of overlaps however large a tile grew.
void verifyInvariants(const GridStore& store) {
    QSet<QUuid> stacks;
    QSet<GridCell> occupied;
    for (const WidgetInstance& i : store.layout().instances) {
        QCOMPARE(i.stackID.has_value(), i.stackIndex.has_value());
        if (i.stackID) {
            stacks.insert(*i.stackID);
        }
        if (i.isPlaced()) {
            const QSet<GridCell> cells = GridStore::cellsCovered(i.col, i.row, i.size);
            QVERIFY(!occupied.intersects(cells));
            occupied.unite(cells);
        }
    }
    for (const QUuid& id : stacks) {
        const QList<WidgetInstance> members = store.stackMembers(id);
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

// Edits of a desktop of five tiles: stacks made and taken apart, sizes, moves, and the history
// that takes them back.
class TestGridStoreEdits : public QObject {
    Q_OBJECT

    GridFixture f;
    std::unique_ptr<GridStore> store;

    QUuid id(int index) const { return store->layout().instances.at(index).id; }
    // One move of the moon tile, `ms` after the previous change.
    void moveAfter(int ms, double x) {
        f.clock.advance(std::chrono::milliseconds(ms));
        store->updatePosition(id(1), x, 500);
    }
    double moonX() const { return store->layout().instances.at(1).posX.value_or(-1); }
    void run(const QString& operation) {
        const QStringList words = operation.simplified().split(QLatin1Char(' '));
        const auto tile = [&](qsizetype word) {
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
        } else if (verb == QLatin1String("move")) {
            store->updatePosition(tile(1), words.at(2).toDouble(), words.at(3).toDouble());
        } else {
            QList<QUuid> ids;
            for (qsizetype word = 1; word + 1 < words.size(); ++word) {
                ids << tile(word);
            }
            store->setSize(ids, *widgetSizeFromRawValue(words.last()));
        }
    }

private Q_SLOTS:
    void init() {
        f.writeGrid(layoutOf(QStringLiteral(
            "clock small 0,0 at 100,800; moon small 1,0 at 300,800; battery small 2,0 at 500,800;"
            "stocks small 3,0 at 700,800; calendar large 4,0 at 900,800")));
        store = f.appStore();
    }
    void cleanup() {
        verifyInvariants(*store);
        QVERIFY(f.savedAsLive(*store));
        store.reset();
    }

    // Operations, ","-separated: "group <dragged> <onto>", "out <tile>", "remove <tile>",
    // "move <tile> <x> <y>" or "size <tile>... <size>", tiles by their index in the layout, -1
    // for an unknown id; then the first tiles of the layout, or "unchanged" when the last
    // operation changes nothing. Each operation is a step of its own: undo takes back the last.
    void operations_data() {
        QTest::addColumn<QString>("operations");
        QTest::addColumn<QString>("expected");
        row("two make a stack at the target", "group 1 0",
            "clock small 0,0 stack A#0 at 100,800; moon small 1,0 stack A#1 at "
            "100,800; battery small 2,0 at 500,800");
        row("a third goes to the end", "group 1 0, group 2 1",
            "clock small 0,0 stack A#0 at 100,800; moon small 1,0 stack A#1 at 100,800; "
            "battery small 2,0 stack A#2 at 100,800");
        row("another size joins in the stack's size", "group 1 0, group 4 0",
            "clock small 0,0 stack A#0 at 100,800; moon small 1,0 stack A#1 at 100,800; "
            "battery small 2,0 at 500,800; stocks small 3,0 at 700,800; "
            "calendar small 4,0 stack A#2 at 100,800");
        row("a stack dropped on another comes along whole", "group 1 0, group 3 2, group 2 0",
            "clock small 0,0 stack A#0 at 100,800; moon small 1,0 stack A#1 at 100,800; "
            "battery small 2,0 stack A#2 at 100,800; stocks small 3,0 stack A#3 at 100,800");
        // Taken out, a tile stands beside where it stood, on its row and the spacing (12) apart.
        row("taking one of two out dissolves the stack", "group 1 0, out 1",
            "clock small 0,0 at 100,800; moon small 1,0 at 208,800");
        row("taking one of three out renumbers", "group 1 0, group 2 0, out 0",
            "clock small 0,0 at 208,800; moon small 1,0 stack A#0 at 100,800; "
            "battery small 2,0 stack A#1 at 100,800");
        row("a tile outside a stack moves alike", "out 0", "clock small 0,0 at 208,800");
        row("a stack moves as one", "group 1 0, move 1 400.5 600",
            "clock small 0,0 stack A#0 at 400.5,600; moon small 1,0 stack A#1 at 400.5,600; "
            "battery small 2,0 at 500,800");
        row("a tile alone moves alone", "group 1 0, move 2 1 2",
            "clock small 0,0 stack A#0 at 100,800; moon small 1,0 stack A#1 at 100,800; "
            "battery small 2,0 at 1,2");
        row("grouping onto itself", "group 0 0", "unchanged");
        row("grouping an unknown id", "group -1 0", "unchanged");
        row("grouping within one stack", "group 1 0, group 1 0", "unchanged");
        row("taking an unknown id out", "out -1", "unchanged");
        // A resize never moves a tile on the desktop.
        row("resizing one tile", "size 2 wide",
            "clock small 0,0 at 100,800; moon small 1,0 at 300,800; battery wide 2,0 at "
            "500,800; "
            "stocks small 4,0 at 700,800; calendar large 5,0 at 900,800");
        row("resizing one member takes its stack along", "group 1 0, size 1 large",
            "clock large 0,0 stack A#0 at 100,800; moon large 2,0 stack A#1 at 100,800; "
            "battery small 4,0 at 500,800");
        row("resizing a stack by all its members", "group 1 0, size 0 1 wide",
            "clock wide 0,0 stack A#0 at 100,800; moon wide 2,0 stack A#1 at 100,800; "
            "battery small 4,0 at 500,800");
        row("resizing to the size it has", "size 0 small", "unchanged");
    }
    void operations() {
        QFETCH(QString, operations);
        QFETCH(QString, expected);
        const QStringList steps = operations.split(QLatin1Char(','));
        for (const QString& step : steps.mid(0, steps.size() - 1)) {
            run(step);
            f.pause();
        }
        const GridLayout before = store->layout();
        const bool couldUndo = store->canUndo();
        QSignalSpy changes(store.get(), &GridStore::layoutChanged);
        run(steps.last());
        const GridLayout after = store->layout();
        if (expected == QLatin1String("unchanged")) {
            QCOMPARE(after, before);
            QCOMPARE(changes.count(), 0);
            QCOMPARE(store->canUndo(), couldUndo);
            return;
        }
        QCOMPARE(dump(after.instances.mid(0, expected.count(QLatin1Char(';')) + 1)), expected);
        QVERIFY(store->undo());
        QCOMPARE(store->layout().instances, before.instances);
        QCOMPARE(store->canUndo(), couldUndo);
        QVERIFY(store->redo());
        QCOMPARE(store->layout().instances, after.instances);
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
        const auto scale2 = settingsOf({{"tileScale", "2"}});
        const auto moon = QStringLiteral("moon");
        const auto clock = QStringLiteral("clock");
        QCOMPARE(store->freeSpot(moon, WidgetSize::small, {}), QPointF(1116, 827));
        QCOMPARE(store->freeSpot(clock, WidgetSize::large, scale2), QPointF(48, 800 - 96 - 12));
        const QRectF right(1440, 0, 1920, 1080);
        QCOMPARE(
            store->freeSpot(moon, WidgetSize::small, {}, ScreenInfo{{}, {}, right, right, false}),
            QPointF(1488, 1032));
        const QRectF tiny(0, 0, 400, 400);
        QVERIFY(!store->freeSpot(clock, WidgetSize::large, scale2,
                                 ScreenInfo{{}, {}, tiny, tiny, false}));
        f.displays.setScreens({});
        QVERIFY(!store->freeSpot(moon, WidgetSize::small, {}));
    }

    // Moves of the moon after the given pauses (ms; the first after a long quiet) give this many
    // steps to undo, back to the moon at `oldest`; redo brings every one back. Each undo and redo
    // is saved and counts as a revision of the history, published once.
    void steps_data() {
        QTest::addColumn<Gaps>("gaps");
        QTest::addColumn<int>("steps");
        QTest::addColumn<double>("oldest");
        row("nothing to go back to", Gaps{}, 0, 300.0);
        row("two moves 1.0 s apart", Gaps{5000, 1000}, 2, 300.0);
        row("two moves 0.999 s apart", Gaps{5000, 999}, 1, 300.0);
        row("ten moves 0.9 s apart slide the window",
            Gaps{5000, 900, 900, 900, 900, 900, 900, 900, 900, 900}, 1, 300.0);
        row("41 changes keep the last 40", Gaps{5000} + Gaps(40, 1000), 40, 310.0);
    }
    void steps() {
        QFETCH(Gaps, gaps);
        QFETCH(int, steps);
        QSignalSpy revisions(store.get(), &GridStore::historyRevisionChanged);
        const QByteArray untouched = f.readGrid();
        double x = moonX();
        for (const int gap : gaps) {
            moveAfter(gap, x += 10);
        }
        const int moved = store->historyRevision();
        int undone = 0;
        while (store->undo()) {
            ++undone;
            QVERIFY(f.savedAsLive(*store));
        }
        QCOMPARE(undone, steps);
        QTEST(moonX(), "oldest");
        int redone = 0;
        while (store->redo()) {
            ++redone;
        }
        QCOMPARE(redone, steps);
        QCOMPARE(moonX(), x);
        QCOMPARE(store->historyRevision(), moved + 2 * steps);
        QCOMPARE(revisions.count(), store->historyRevision());
        if (gaps.isEmpty()) {
            QCOMPARE(f.readGrid(), untouched);
        }
    }

    void aNewChangeEmptiesTheRedoStack_data() {
        QTest::addColumn<int>("gap");
        row("after a pause", 5000);
        // The change that ends the pause within a burst pushes nothing, and still forgets redo.
        row("within the burst window", 100);
    }
    void aNewChangeEmptiesTheRedoStack() {
        QFETCH(int, gap);
        moveAfter(5000, 10);
        moveAfter(5000, 20);
        QVERIFY(store->undo());
        QVERIFY(store->canRedo());
        moveAfter(gap, 30);
        QVERIFY(!store->canRedo());
        QVERIFY(!store->redo());
    }

    void savesWithoutAChangeRecordNothing() {
        QSignalSpy revisions(store.get(), &GridStore::historyRevisionChanged);
        store->save();
        f.clock.advance(5s);
        store->save();
        // Only pageCount differs: not a change of the desktop.
        GridLayout pages = store->layout();
        pages.pageCount = 3;
        store->replaceLayout(pages);
        QVERIFY(!store->canUndo());
        QCOMPARE(revisions.count(), 1); // the reset of replaceLayout
    }

    // A custom widget deleted since the step was recorded doesn't come back with an undo.
    void undoDropsKindsThatWentAway() {
        const QString custom = QStringLiteral("custom.6F1C2D1E-0B7A-4D59-9E0C-3A1B2C3D4E5F");
        f.custom.sizes.insert(custom, {WidgetSize::small});
        QVERIFY(store->addFree(custom));
        f.clock.advance(5s);
        store->remove(store->layout().instances.last().id);
        f.clock.advance(5s);
        QVERIFY(store->addFree(QStringLiteral("stickynote")));
        f.custom.sizes.clear();
        QVERIFY(store->undo()); // before the note
        QVERIFY(store->undo()); // before the custom widget's removal, which held it
        QCOMPARE(store->layout().instances.size(), 5);
        QCOMPARE(store->instanceCount(custom), 0);
    }
};

QTEST_GUILESS_MAIN(TestGridStoreEdits)
#include "tst_gridstoreedits.moc"
