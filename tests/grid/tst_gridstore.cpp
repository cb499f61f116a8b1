#include "FaultShim.h"
#include "GridFixture.h"
#include "NotAFile.h"
#include "TestRows.h"

#include <QSignalSpy>
#include <QTest>

#include <cerrno>

using namespace tw;
using namespace tw::test;

namespace {
const QString kCustom = QStringLiteral("custom.6F1C2D1E-0B7A-4D59-9E0C-3A1B2C3D4E5F");
const QString kGoneCustom = QStringLiteral("custom.00000000-0000-4000-8000-000000000001");

// The text form with CUSTOM and GONE standing for a defined and an undefined custom kind.
QString expanded(QString text) {
    return text.replace(QLatin1String("CUSTOM"), kCustom)
        .replace(QLatin1String("GONE"), kGoneCustom);
}
QString abbreviated(QString text) {
    return text.replace(kCustom, QLatin1String("CUSTOM"))
        .replace(kGoneCustom, QLatin1String("GONE"));
}
} // namespace

class TestGridStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { twfault_disarm(); }

    // The application's store starts the first desktop and writes nothing until the first
    // change; a store on another file starts empty, and its saves are not announced. A save
    // stamps the file, not the live layout.
    void aMissingFile() {
        GridFixture f;
        auto preview = f.fileStore(QStringLiteral("preview.json"));
        QCOMPARE(preview->layout(), GridLayout::defaultLayout());
        QVERIFY(!preview->ownsSharedState());
        QSignalSpy previewSaved(preview.get(), &GridStore::saved);
        preview->addFree(QStringLiteral("moon"));
        QCOMPARE(previewSaved.count(), 0);
        QVERIFY(QFile::remove(f.dir.filePath(QStringLiteral("preview.json"))));
        auto store = f.appStore();
        QCOMPARE(dump(store->layout()),
                 QStringLiteral("clock large 0,0; calendar large 2,0; weather wide 0,2"));
        QCOMPARE(f.files(), QStringList());
        QVERIFY(!store->canUndo());
        QVERIFY(!store->lastSavedAt());
        QSignalSpy saved(store.get(), &GridStore::saved);
        store->addFree(QStringLiteral("moon"));
        QCOMPARE(f.files(), QStringList{QStringLiteral("grid.json")});
        QCOMPARE(store->lastSavedAt(), f.clock.now());
        QVERIFY(!store->layout().savedAt);
        QCOMPARE(GridLayout::fromJsonText(f.readGrid())->savedAt, f.clock.now());
        QCOMPARE(saved.count(), 1);
        QCOMPARE(saved.first().first().value<GridLayout>(), store->layout());
        auto again = f.appStore();
        QCOMPARE(again->layout().instances.size(), 4);
        QCOMPARE(again->layout().instances.last().id, store->layout().instances.last().id);
    }

    // An unreadable file is set aside once and the desktop starts empty; a fault the parser
    // refuses costs only the member it is in (the original is set aside, what a tolerant reading
    // recovers is written back).
    void loadsWhatItCan_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("loaded");
        row("not JSON", QByteArray("{\"instances\": ["), "");
        row("empty file", QByteArray(), "");
        row("a number out of range, nothing else", QByteArray("[1e999]"), "");
        const QString both = QStringLiteral("moon small 3,4; clock large 0,0");
        const QByteArray head = R"({"instances":[{"kind":"moon","size":"small","col":3,"row":4},
            {"kind":"clock","size":"large","col":0,"row":0,"settings":{)";
        row("a number out of range in a key nothing reads", head + R"("unread": [1e999]}}]})",
            both);
    }
    void loadsWhatItCan() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, loaded);
        GridFixture f;
        f.writeGrid(bytes);
        // What a save cut short by a crash left goes at the next start.
        const QString partial =
            f.dir.filePath(QStringLiteral("grid.json.4194305-0a1b2c3d.tarnwick-partial"));
        QVERIFY(QFile(partial).open(QIODevice::WriteOnly));
        auto store = f.appStore();
        QCOMPARE(dump(store->layout()), loaded);
        QVERIFY(!QFile::exists(partial));
        const QStringList corrupt =
            QDir(f.dir.path()).entryList({QStringLiteral("*.corrupt")}, QDir::Files);
        QCOMPARE(corrupt.size(), 1);
        QVERIFY(corrupt.first().startsWith(QStringLiteral("grid.2026-03-14-0926")));
        QCOMPARE(QFile(f.dir.filePath(corrupt.first())).size(), bytes.size());
        QCOMPARE(QFile::exists(f.gridPath()), !loaded.isEmpty());
        const QStringList files = f.files();
        store.reset();
        auto again = f.appStore();
        QCOMPARE(f.files(), files);
        if (!loaded.isEmpty()) {
            QCOMPARE(dump(again->layout()), loaded);
        }
    }

    // Whatever sits in the file's place, the start returns (a FIFO or /dev/zero would hang a
    // plain read) with an empty desktop, and no save ever replaces it.
    void whatIsNotAFileIsLeftAlone_data() {
        QTest::addColumn<QString>("kind");
        for (const char* kind : {"fifo", "zero", "dir", "dangling"}) {
            QTest::newRow(kind) << QString::fromLatin1(kind);
        }
    }
    void whatIsNotAFileIsLeftAlone() {
        QFETCH(QString, kind);
        GridFixture f;
        const QString path = f.gridPath();
        QVERIFY(placeNotAFile(kind, path));
        const auto entries = [&] {
            const QFileInfo info(path);
            return QDir(f.dir.path())
                       .entryList(QDir::AllEntries | QDir::System | QDir::Hidden |
                                  QDir::NoDotAndDotDot)
                   << info.symLinkTarget() << QString::number(info.isDir());
        };
        const QStringList before = entries();
        auto store = f.appStore();
        QCOMPARE(store->layout(), GridLayout::defaultLayout());
        QVERIFY(store->addFree(QStringLiteral("moon")));
        QCOMPARE(entries(), before);
        QCOMPARE(store->layout().instances.size(), 1);
    }

    // What the load and a replacement make of a layout, tile by tile; CUSTOM is defined, GONE
    // is not.
    void healsAtLoad_data() {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("customStoreHealthy");
        QTest::addColumn<QString>("healed");
        row("unknown kinds go, the retired alias stays", "fax small 0,0; analogclock small 0,0",
            true, "analogclock small 0,0");
        row("an unknown custom kind goes while its store is healthy",
            "GONE small 0,0; CUSTOM small 1,0", true, "CUSTOM small 1,0");
        row("and stays while it is unreadable", "GONE small 0,0; CUSTOM small 1,0", false,
            "GONE small 0,0; CUSTOM small 1,0");
        // clock lost tall: small and large are both 1 away with equal ratios; small has fewer
        // cells.
        row("a retired size moves to the nearest and leaves its stack",
            "clock tall 0,0 stack A#0 at 10,500; stocks tall 1,0 stack A#1 at 10,500;"
            "stocks tall 2,0 stack A#2 at 10,500",
            true,
            "clock small 0,0 at 10,500; stocks tall 1,0 stack A#0 at 10,500; "
            "stocks tall 2,0 stack A#1 at 10,500");
        row("a stack of two that loses one dissolves",
            "fax small 0,0 stack A#0; moon small 1,0 stack A#1", true, "moon small 1,0");
        row("stack indices close their gaps",
            "moon small 0,0 stack A#5; clock small 1,0 stack A#0; battery small 2,0 stack A#2",
            true,
            "moon small 0,0 stack A#2; clock small 1,0 stack A#0; battery small 2,0 stack A#1");
        row("a stack index without a stack goes", "moon small 0,0 index 3", true, "moon small 0,0");
        row("a retired lock size moves too; nonsense stays",
            "clock large 0,0 lock huge; clock large 2,0 lock wide; clock large 4,0 lock vast", true,
            "clock large 0,0 lock wideTall; clock large 2,0 lock wide; clock large 4,0 lock "
            "vast");
        row("a collision: the lower row keeps the cell", "clock large 1,1; clock large 0,0", true,
            "clock large 2,0; clock large 0,0");
        row("off the grid's edge: to the first free slot",
            "clock large 0,0; weather wide 7,0; clock large 0,9", true,
            "clock large 0,0; weather wide 2,0; clock large 4,0");
        row("unplaced ones fill free slots by creation order",
            "moon small -1,-1 #2; clock small -1,-1 #1; battery small 0,0", true,
            "moon small 2,0; clock small 1,0; battery small 0,0");
        // Six grand tiles fill rows 0 to 8; two rows high, the clock overflows from row 9 and
        // finds no other slot.
        const QString full = QStringLiteral(
            "weather grand 0,0; weather grand 4,0; weather grand 0,3; CUSTOM grand 4,3; "
            "CUSTOM grand 0,6; CUSTOM grand 4,6; ");
        row("a full grid leaves the rest unplaced where they stand",
            QString(full + QStringLiteral("clock large 0,9 at 300,700; moon small 3,9")), true,
            QString(full + QStringLiteral("clock large -1,-1 at 300,700; moon small 3,9")));
    }
    void healsAtLoad() {
        QFETCH(QString, stored);
        QFETCH(bool, customStoreHealthy);
        QFETCH(QString, healed);
        GridFixture f;
        f.custom.sizes.insert(kCustom, {WidgetSize::small, WidgetSize::large, WidgetSize::grand});
        f.custom.healthy = customStoreHealthy;
        const GridLayout layout = layoutOf(expanded(stored));
        f.writeGrid(layout);
        auto store = f.appStore();
        QCOMPARE(abbreviated(dump(store->layout())), healed.simplified());
        // Healing is not written back, and can't be undone.
        QCOMPARE(f.readGrid(), layout.toJsonText());
        QVERIFY(!store->undo());
        // A layout put in place whole heals alike, is saved, and ends the history.
        QVERIFY(store->addFree(QStringLiteral("stickynote")));
        store->replaceLayout(layout);
        QCOMPARE(abbreviated(dump(store->layout())), healed.simplified());
        QVERIFY(f.savedAsLive(*store));
        QVERIFY(!store->undo());
        QVERIFY(!store->redo());
    }

    // "wanted: allowed... -> nearest".
    void nearest_data() {
        QTest::addColumn<QString>("sizes");
        row("empty list", "huge: -> huge");
        row("exact", "wide: small wide -> wide");
        row("least distance", "grand: small huge large -> huge");
        row("equal distance: nearer ratio", "banner: large panorama -> panorama");
        row("equal ratio: fewer cells", "tall: large small -> small");
        row("full tie: the first", "large: tall wide -> tall");
    }
    void nearest() {
        QFETCH(QString, sizes);
        const QStringList words = sizes.split(QLatin1Char(' '));
        QList<WidgetSize> allowed;
        for (const QString& word : words.mid(1, words.size() - 3)) {
            allowed << *widgetSizeFromRawValue(word);
        }
        const auto wanted = widgetSizeFromRawValue(words.first().chopped(1));
        QCOMPARE(rawValue(GridStore::nearest(*wanted, allowed)), words.last());
    }

    void pagesAndRows() {
        GridFixture f;
        f.writeGrid(layoutOf(QStringLiteral("clock large 5,4 #3; battery small -1,-1 #1; calendar "
                                            "small 0,4 #9; moon small 0,0 p1")));
        auto store = f.appStore();
        // The unplaced battery took the first free cell at load.
        QCOMPARE(dump(store->instances(0)),
                 QStringLiteral("battery small 0,0; calendar small 0,4; clock large 5,4"));
        QCOMPARE(store->displayRows(0), 6);
        QCOMPARE(store->displayRows(1), 3);
        QCOMPARE(store->displayRows(7), 3);
        QCOMPARE(store->layout().pageCount, 2);
    }

    void addFree() {
        GridFixture f;
        f.writeGrid(GridLayout());
        auto store = f.appStore();
        const auto first =
            store->addFree(QStringLiteral("stickynote"), std::nullopt,
                           settingsOf({{"text", "milk"}, {"color", "yellow"}}), QPointF(100, 700));
        // A copy keeps the look and leaves the content behind; with only content, nothing is
        // left, stored as no settings at all.
        const auto copy =
            store->addFree(QStringLiteral("stickynote"), WidgetSize::tall, first->settings);
        const auto bare = store->addFree(QStringLiteral("stickynote"), std::nullopt,
                                         settingsOf({{"text", "eggs"}}));
        QCOMPARE(dump(store->layout()), QStringLiteral("stickynote large -1,-1 at 100,700; "
                                                       "stickynote tall -1,-1; "
                                                       "stickynote large -1,-1"));
        QCOMPARE(first->order, 0);
        QCOMPARE(copy->order, 1);
        QCOMPARE(first->settings, (settingsOf({{"text", "milk"}, {"color", "yellow"}})));
        QCOMPARE(copy->settings, (settingsOf({{"color", "yellow"}})));
        QVERIFY(!bare->settings);
        QVERIFY(f.savedAsLive(*store));
    }

    void addFreeRefuses_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("present");
        row("unknown kind", "fax", 0);
        row("stocks at its six", "stocks", 6);
    }
    void addFreeRefuses() {
        QFETCH(QString, kind);
        QFETCH(int, present);
        GridFixture f;
        f.writeGrid(layoutOf(QString(kind + QStringLiteral(" small -1,-1;")).repeated(present)));
        const QByteArray before = f.readGrid();
        auto store = f.appStore();
        QSignalSpy changes(store.get(), &GridStore::layoutChanged);
        QVERIFY(!store->addFree(kind));
        QCOMPARE(changes.count(), 0);
        QCOMPARE(f.readGrid(), before);
        QVERIFY(!store->canUndo());
    }

    void weatherByHandKeepsTheAutomaticPlacementAway() {
        GridFixture f;
        const QString key = QStringLiteral("tarnwick.weather.userPlaced");
        f.fileStore(QStringLiteral("p.json"))->addFree(QStringLiteral("weather"));
        auto store = f.appStore();
        store->addFree(QStringLiteral("moon"));
        QVERIFY(!f.defaults.contains(key));
        store->addFree(QStringLiteral("weather"));
        QCOMPARE(f.defaults.value(key), QVariant(true));
    }

    void removeAndRemoveAll() {
        GridFixture f;
        f.writeGrid(layoutOf(QStringLiteral("stocks wide -1,-1 stack A#0; stocks wide -1,-1 "
                                            "stack A#1; moon small -1,-1; stocks small -1,-1")));
        auto store = f.appStore();
        store->remove(QUuid::createUuid());
        QVERIFY(!store->canUndo());
        store->remove(store->layout().instances.first().id);
        QVERIFY(!store->layout().instances.first().inStack());
        QCOMPARE(store->removeAll(QStringLiteral("stocks")), 2);
        QCOMPARE(dump(store->layout()), QStringLiteral("moon small 4,0"));
        QCOMPARE(store->removeAll(QStringLiteral("stocks")), 0);
        QVERIFY(f.savedAsLive(*store));
    }

    void applyPreset() {
        GridFixture f;
        f.writeGrid(layoutOf(QStringLiteral("calendar large -1,-1")));
        auto store = f.appStore();
        DesktopPreset preset;
        preset.entries = {
            {QStringLiteral("clock"), WidgetSize::large, 0, 0, {}},
            {QStringLiteral("fax"), WidgetSize::small, 2, 0, {}},
            {QStringLiteral("calendar"), WidgetSize::large, 2, 0, {}},
            {QStringLiteral("moon"), WidgetSize::small, 2, 1, settingsOf({{"a", "b"}})},
            {QStringLiteral("moon"), WidgetSize::small, 3, 1, {}}};
        QCOMPARE(store->apply(preset, GridStore::Replacing::no), 2);
        // Below the main screen's top-left (0, 875) by 48, one cell every 108.
        QCOMPARE(dump(store->layout()), QStringLiteral("calendar large 0,0; clock large 0,0 at "
                                                       "48,827; moon small 2,1 at 264,719"));
        QCOMPARE(store->layout().instances.at(2).order, 2);
        QCOMPARE(store->apply(preset, GridStore::Replacing::yes), 3);
        QCOMPARE(store->layout().instances.size(), 3);

        f.displays.setScreens({});
        store->replaceLayout(GridLayout::defaultLayout());
        QCOMPARE(store->apply(preset, GridStore::Replacing::no), 3);
        QCOMPARE(store->layout().instances.first().posY, 900.0 - 48);
    }

    void appendForeignInstances() {
        GridFixture f;
        f.custom.sizes.insert(kCustom, {WidgetSize::small});
        f.writeGrid(layoutOf(QStringLiteral("calendar large -1,-1")));
        auto store = f.appStore();
        const auto incoming = layoutOf(expanded(QStringLiteral(
            "moon wide 3,3 at 5,6; calendar small -1,-1; CUSTOM small -1,-1; GONE small -1,-1; "
            "moon small -1,-1")));
        const auto result = store->append(incoming.instances, GridStore::Replacing::no);
        QCOMPARE(abbreviated(dump(result.placed)),
                 QStringLiteral("moon wide 3,3 at 5,6; CUSTOM small -1,-1"));
        QCOMPARE(abbreviated(dump(result.refused)),
                 QStringLiteral("calendar small -1,-1; GONE small -1,-1; moon small -1,-1"));
        QCOMPARE(store->layout().instances.at(1), incoming.instances.at(0));
        QCOMPARE(store->append({result.refused.at(0)}, GridStore::Replacing::yes).placed.size(), 1);
        QCOMPARE(store->layout().instances, QList{result.refused.at(0)});
    }

    void highlightClearsAfterItsTime() {
        GridFixture f;
        auto store = f.appStore();
        const QUuid a = store->layout().instances.at(0).id;
        const QUuid b = store->layout().instances.at(1).id;
        QSignalSpy spy(store.get(), &GridStore::highlightedIDChanged);
        store->highlight(a);
        QCOMPARE(store->highlightedID(), a);
        f.scheduler.advance(std::chrono::milliseconds(1000));
        store->highlight(b);
        // The first task runs at 2.2 s and finds another id: it leaves it.
        f.scheduler.advance(std::chrono::milliseconds(1300));
        QCOMPARE(store->highlightedID(), b);
        f.scheduler.advance(std::chrono::milliseconds(900));
        QCOMPARE(store->highlightedID(), QUuid());
        QCOMPARE(spy.count(), 3);
    }

    // A full disk: the old file stays byte for byte, the live layout stands, one line is logged,
    // and the next change writes everything.
    void aFailedSaveChangesNothingOnDisk_data() {
        QTest::addColumn<int>("calls");
        QTest::addColumn<int>("error");
        row("write ENOSPC", int(TwFaultWrite), ENOSPC);
        row("fsync EIO", int(TwFaultSync), EIO);
    }
    void aFailedSaveChangesNothingOnDisk() {
        QFETCH(int, calls);
        QFETCH(int, error);
        GridFixture f;
        auto store = f.appStore();
        store->addFree(QStringLiteral("moon"));
        const QByteArray before = f.readGrid();
        const auto savedAt = store->lastSavedAt();
        const QUuid moon = store->layout().instances.last().id;
        f.clock.advance(std::chrono::seconds(5));

        twfault_arm(calls, error, -1, QFile::encodeName(f.dir.path()).constData());
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral(
                                 "^save failed, the next change tries again: .*grid\\.json")));
        store->updatePosition(moon, 10, 500);
        twfault_disarm();
        QCOMPARE(f.readGrid(), before);
        QCOMPARE(f.files(), QStringList{QStringLiteral("grid.json")});
        QCOMPARE(store->layout().instances.last().posX, 10.0);
        QCOMPARE(store->lastSavedAt(), savedAt);

        store->updatePosition(moon, 20, 500);
        QVERIFY(f.savedAsLive(*store));
        QCOMPARE(store->lastSavedAt(), f.clock.now());
    }
};

QTEST_GUILESS_MAIN(TestGridStore)
#include "tst_gridstore.moc"
