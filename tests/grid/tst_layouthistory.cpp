#include "GridFixture.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;
using Gaps = QList<int>;

class TestLayoutHistory : public QObject {
    Q_OBJECT

    GridFixture f;
    std::unique_ptr<GridStore> store;
    QUuid moon;

    // One move of the moon tile, `ms` after the previous change.
    void moveAfter(int ms, double x) {
        f.clock.advance(std::chrono::milliseconds(ms));
        store->updatePosition(moon, x, 500);
    }
    double moonX() const { return store->instance(moon)->posX.value_or(-1); }

private Q_SLOTS:
    void init() {
        const GridLayout start = layoutOf(QStringLiteral("moon small -1,-1 at 0,500"));
        moon = start.instances.first().id;
        f.writeGrid(start);
        store = f.appStore();
    }
    void cleanup() { store.reset(); }

    // Moves after the given pauses (ms; the first after a long quiet) give this many steps to
    // undo, back to the moon at `oldest`; redo brings every one back. Each undo and redo is
    // saved and counts as a revision of the history, published once.
    void steps_data() {
        QTest::addColumn<Gaps>("gaps");
        QTest::addColumn<int>("steps");
        QTest::addColumn<double>("oldest");
        QTest::newRow("nothing to go back to") << Gaps{} << 0 << 0.0;
        QTest::newRow("two moves 1.0 s apart") << Gaps{5000, 1000} << 2 << 0.0;
        QTest::newRow("two moves 0.999 s apart") << Gaps{5000, 999} << 1 << 0.0;
        QTest::newRow("ten moves 0.9 s apart slide the window")
            << Gaps{5000, 900, 900, 900, 900, 900, 900, 900, 900, 900} << 1 << 0.0;
        QTest::newRow("41 changes keep the last 40") << Gaps{5000} + Gaps(40, 1000) << 40 << 10.0;
    }
    void steps() {
        QFETCH(Gaps, gaps);
        QFETCH(int, steps);
        QSignalSpy revisions(store.get(), &GridStore::historyRevisionChanged);
        const QByteArray untouched = f.readGrid();
        double x = 0;
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
        QTest::newRow("after a pause") << 5000;
        // The change that ends the pause within a burst pushes nothing, and still forgets redo.
        QTest::newRow("within the burst window") << 100;
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
        QVERIFY(store->addFree(QStringLiteral("battery")));
        f.custom.sizes.clear();
        QVERIFY(store->undo()); // before the battery
        QVERIFY(store->undo()); // before the custom widget's removal, which held it
        QCOMPARE(store->layout().instances.size(), 1);
        QCOMPARE(store->instanceCount(custom), 0);
    }
};

QTEST_GUILESS_MAIN(TestLayoutHistory)
#include "tst_layouthistory.moc"
