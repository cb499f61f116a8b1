#include "DisplayFixtures.h"
#include "Files.h"
#include "NotAFile.h"
#include "displays/LayoutProfileResolver.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace std::chrono_literals;

namespace tw {

using namespace test;

namespace {

const QList<LayoutDisplay> laptopOnly =
    displaysOf(QStringLiteral("laptop@0,0,1512x982*^950=Built-in Retina Display"));
const QList<LayoutDisplay> both =
    laptopOnly + displaysOf(QStringLiteral("monitor@1512,0,2560x1440=LG HDR 4K"));

// Three tiles on the monitor (a group in its top-right corner, one at its bottom left) and one
// on the laptop.
GridLayout desk() {
    return layoutOf(
        QStringLiteral("1 large 3848,1420; 2 small 3740,1420; 3 wide 1544,140; 4 small 24,926"));
}

GridLayout nudged(GridLayout layout, int n, double dx) {
    for (WidgetInstance& widget : layout.instances) {
        if (widget.id == widgetId(n)) {
            widget.posX = *widget.posX + dx;
        }
    }
    return layout;
}

QJsonDocument readJson(const QString& path) {
    return QJsonDocument::fromJson(readFile(path));
}

struct Rig : MemoryRig {
    Rig()
        : MemoryRig({screenInfo(both[0]), screenInfo(both[1])}) {}
};

} // namespace

class TestTopologyMemory : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Both files are written and read back whole; nothing is recorded while in doubt.
    void remember_data() {
        QTest::addColumn<QString>("situation");
        QTest::newRow("settled") << "settled";
        QTest::newRow("settling") << "settling";
        QTest::newRow("asleep") << "asleep";
        QTest::newRow("unusable display") << "unusable display";
    }
    void remember() {
        QFETCH(QString, situation);
        Rig rig;
        auto memory = rig.memory();
        QList<LayoutDisplay> displays = both;
        if (situation == QLatin1String("settling")) {
            rig.displays.setScreens({screenInfo(both[0])});
        } else if (situation == QLatin1String("asleep")) {
            Q_EMIT rig.displays.willSleep();
        } else if (situation == QLatin1String("unusable display")) {
            displays[1].visibleFrame.width = 1.0;
        }
        memory->remember(desk(), displays);
        const bool recorded = situation == QLatin1String("settled");
        QCOMPARE(memory->configurationCount(), recorded ? 1 : 0);
        QCOMPARE(memory->homes().size(), recorded ? 4 : 0);
        QCOMPARE(memory->homesPath(), rig.path("topology.homes.json"));
        QCOMPARE(QFile::exists(rig.path("topology.json")), recorded);
        QCOMPARE(QFile::exists(memory->homesPath()), recorded);
        QCOMPARE(readJson(rig.path("topology.homes.json")).array().size(), recorded ? 4 : 0);
        const QString signature = LayoutProfileResolver::topologySignature(both);
        QCOMPARE(readJson(rig.path("topology.json")).object().keys(),
                 recorded ? QStringList{signature} : QStringList());
        QCOMPARE(memory->currentSignature(), recorded ? std::optional(signature) : std::nullopt);

        auto reloaded = rig.memory();
        QCOMPARE(reloaded->snapshots(), memory->snapshots());
        QCOMPARE(reloaded->homes(), memory->homes());
        QVERIFY(!reloaded->currentSignature());
        QVERIFY(!QFile::exists(reloaded->backupPath()));
    }

    // Unplug, nudge by 2 points, plug back: home. Unplug, nudge by 3 points, plug back: the
    // widget has a new home where the user put it. A newcomer is captured on the set being left;
    // a widget removed while away loses its home.
    void parkedVisitorsGoHome() {
        Rig rig;
        auto memory = rig.memory();
        const GridLayout original = desk();
        memory->remember(original, both);
        // A home is known by its id, or by its name; no home, no visitor.
        QVERIFY(!memory->isVisitor(widgetId(1), both));
        QVERIFY(!memory->isVisitor(
            widgetId(1),
            laptopOnly + displaysOf(QStringLiteral("other@1512,0,2560x1440=lg hdr 4k"))));
        QVERIFY(memory->isVisitor(widgetId(4), {}));
        QVERIFY(!memory->isVisitor(widgetId(99), laptopOnly));

        QTest::ignoreMessage(QtInfoMsg,
                             "display configuration changed — placing every widget from its home");
        const auto unplugged = memory->layoutForSettled(laptopOnly, original);
        QVERIFY(unplugged);
        for (int n = 1; n <= 3; ++n) {
            const WidgetInstance& widget = widgetIn(*unplugged, n);
            QVERIFY(*widget.posX >= 0 && *widget.posX + widget.pixelSize().width() <= 1512);
            QVERIFY(memory->isVisitor(widgetId(n), laptopOnly));
        }
        QCOMPARE(widgetIn(*unplugged, 4), widgetIn(original, 4));
        QCOMPARE(*widgetIn(*unplugged, 1).posX, 1512.0 - 20 - 204);
        QCOMPARE(*widgetIn(*unplugged, 1).posY, 950.0 - 20);

        memory->remember(*unplugged, laptopOnly);
        const GridLayout touched = nudged(*unplugged, 1, 2.0);
        memory->remember(touched, laptopOnly);
        QCOMPARE(memory->homes().value(widgetId(1)).displayID, QStringLiteral("monitor"));
        const auto replugged = memory->layoutForSettled(both, touched);
        QVERIFY(replugged);
        QCOMPARE(*replugged, original);
        memory->remember(*replugged, both);

        GridLayout current = original;
        current.instances << layoutOf(QStringLiteral("5 small 2000,700")).instances;
        const auto again = memory->layoutForSettled(laptopOnly, current);
        QVERIFY(again);
        QCOMPARE(memory->homes().value(widgetId(5)).displayID, QStringLiteral("monitor"));
        GridLayout dragged = nudged(*again, 2, -3.0);
        dragged.instances.removeIf([](const WidgetInstance& w) { return w.id == widgetId(3); });
        memory->remember(dragged, laptopOnly);
        QCOMPARE(memory->homes().value(widgetId(2)).displayID, QStringLiteral("laptop"));
        QVERIFY(!memory->isVisitor(widgetId(2), laptopOnly));
        QVERIFY(memory->isVisitor(widgetId(5), laptopOnly));
        QVERIFY(!memory->homes().contains(widgetId(3)));
        QCOMPARE(readJson(memory->homesPath()).array().size(), 4);

        const auto back = memory->layoutForSettled(both, dragged);
        QVERIFY(back);
        QCOMPARE(widgetIn(*back, 2), widgetIn(dragged, 2));
        QCOMPARE(widgetIn(*back, 1), widgetIn(original, 1));
        QCOMPARE(widgetIn(*back, 5), widgetIn(current, 5));
    }

    // A settled set with nothing to move gives no layout; a usable new set is still recorded,
    // anything else leaves the memory and its files as they were.
    void settledWithNothingToMove_data() {
        QTest::addColumn<QList<LayoutDisplay>>("settled");
        QTest::addColumn<bool>("recorded");
        QTest::newRow("a new set") << both << true;
        QTest::newRow("the same set again") << laptopOnly << false;
        QTest::newRow("a zero-sized display")
            << (laptopOnly + displaysOf(QStringLiteral("monitor@1512,0,2560x1440^0"))) << false;
    }
    void settledWithNothingToMove() {
        QFETCH(QList<LayoutDisplay>, settled);
        QFETCH(bool, recorded);
        Rig rig;
        auto memory = rig.memory();
        const GridLayout onLaptop = layoutOf(QStringLiteral("4 small 24,926"));
        memory->remember(onLaptop, laptopOnly);
        const QByteArray before = readFile(memory->filePath());
        QVERIFY(!memory->layoutForSettled(settled, onLaptop));
        QCOMPARE(memory->currentSignature(),
                 LayoutProfileResolver::topologySignature(recorded ? settled : laptopOnly));
        QCOMPARE(memory->configurationCount(), recorded ? 2 : 1);
        QCOMPARE(readFile(memory->filePath()) != before, recorded);
    }

    void thirteenthConfigurationEvictsTheOldest() {
        Rig rig;
        auto memory = rig.memory();
        QStringList signatures;
        for (int i = 0; i < 13; ++i) {
            const auto displays = displaysOf(QStringLiteral("laptop@0,0,%1x900*").arg(1000 + i));
            signatures << LayoutProfileResolver::topologySignature(displays);
            GridLayout layout = desk();
            layout.instances << layoutOf(QStringLiteral("%1 small 10,500").arg(10 + i)).instances;
            if (i > 0) {
                layout.instances.removeIf([](const WidgetInstance& w) { return w.order == 4; });
            }
            memory->remember(layout, displays);
            rig.clock.advance(1min);
        }
        QCOMPARE(memory->configurationCount(), 12);
        QVERIFY(!memory->snapshots().contains(signatures.first()));
        QVERIFY(memory->snapshots().contains(signatures.last()));
        QCOMPARE(readJson(memory->filePath()).object().size(), 12);
        QCOMPARE(memory->homes().size(), 4);
    }

    // A file as an older version wrote it: other keys, no anchors, two records of one display
    // set, one with no placements at all, and a member that is not a snapshot.
    void olderFileIsReKeyedAndBackedUpOnce() {
        Rig rig;
        auto memory = rig.memory();
        memory->remember(desk(), both);
        rig.clock.advance(1h);
        memory->remember(nudged(desk(), 4, 100), laptopOnly);
        QJsonObject old;
        for (LayoutProfileSnapshot snapshot : memory->snapshots()) {
            for (LayoutWidgetPlacement& placement : snapshot.placements) {
                placement.anchorH = placement.anchorV = std::nullopt;
                placement.offsetX = placement.offsetY = std::nullopt;
            }
            old.insert(QStringLiteral("old-%1").arg(old.size() + 1), snapshot.toJson());
        }
        QJsonObject stale = old.value(QStringLiteral("old-1")).toObject();
        stale.insert(QStringLiteral("capturedAt"), -1000.0);
        old.insert(QStringLiteral("old-0"), stale);
        stale.insert(QStringLiteral("placements"), QJsonArray());
        old.insert(QStringLiteral("empty"), stale);
        old.insert(QStringLiteral("garbage"), QStringLiteral("not a snapshot"));
        const QByteArray oldBytes = QJsonDocument(old).toJson();
        QVERIFY(writeFile(rig.path("topology.json"), oldBytes));

        QTest::ignoreMessage(QtInfoMsg, "dropped 1 placement-less snapshot(s)");
        QTest::ignoreMessage(QtInfoMsg, "topology memory migrated: 3 → 2 configuration(s)");
        auto migrated = rig.memory();
        QCOMPARE(migrated->configurationCount(), 2);
        QCOMPARE(readFile(migrated->backupPath()), oldBytes);
        QCOMPARE(readJson(rig.path("topology.json")).object().keys(),
                 QStringList(migrated->snapshots().keys()));
        for (const LayoutProfileSnapshot& snapshot : migrated->snapshots()) {
            QVERIFY(snapshot.capturedAt.toSecsSinceEpoch() > 978307200);
            for (const LayoutWidgetPlacement& placement : snapshot.placements) {
                QVERIFY(placement.isAnchored());
            }
        }

        // Migrated again: the backup keeps the very first file.
        QVERIFY(writeFile(rig.path("topology.json"),
                          QJsonDocument(old).toJson(QJsonDocument::Compact)));
        auto twice = rig.memory();
        QCOMPARE(readFile(twice->backupPath()), oldBytes);
        QCOMPARE(rig.memory()->snapshots(), twice->snapshots());
    }

    // An unreadable file is set aside, never overwritten; a number out of range costs only the
    // member it is in; whatever is not a file at all is left alone; either way the start returns
    // (a FIFO or /dev/zero would hang a plain read).
    void unreadableFilesAreSetAsideOrLeftAlone_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kind");
        for (const char* name : {"topology.json", "topology.homes.json"}) {
            for (const char* kind : {"garbage", "fault", "fifo", "zero", "dir", "dangling"}) {
                QTest::addRow("%s, %s", name, kind)
                    << QString::fromLatin1(name) << QString::fromLatin1(kind);
            }
        }
    }
    void unreadableFilesAreSetAsideOrLeftAlone() {
        QFETCH(QString, name);
        QFETCH(QString, kind);
        Rig rig;
        rig.memory()->remember(desk(), both);
        const QString path = rig.dir.filePath(name);
        QByteArray bytes = readFile(path);
        QVERIFY(QFile::remove(path));
        const bool garbage = kind == QStringLiteral("garbage");
        const bool fault = kind == QStringLiteral("fault");
        if (garbage || fault) {
            bytes = garbage ? QByteArray("[nonsense")
                            : bytes.insert(1, bytes.startsWith('{') ? "\"x\":1e999," : "1e999,");
            QVERIFY(writeFile(path, bytes));
        } else {
            QVERIFY(placeNotAFile(kind, path));
        }
        const bool homes = name == QStringLiteral("topology.homes.json");
        if (garbage && !homes) {
            QTest::ignoreMessage(QtWarningMsg, "topology memory unreadable — starting fresh");
        }
        auto memory = rig.memory();
        QCOMPARE(memory->configurationCount(), homes || fault ? 1 : 0);
        QCOMPARE(memory->homes().size(), homes && !fault ? 0 : 4);
        const QStringList setAside =
            QDir(rig.dir.path())
                .entryList({QFileInfo(path).completeBaseName() + QStringLiteral(".2*.corrupt")},
                           QDir::Files);
        QCOMPARE(setAside.size(), garbage || fault ? 1 : 0);

        memory->remember(desk(), both);
        QCOMPARE(QFileInfo(path).isFile(), garbage || fault);
        QCOMPARE(QFileInfo(path).isSymLink(),
                 kind == QStringLiteral("zero") || kind == QStringLiteral("dangling"));
        QCOMPARE(QFileInfo(path).isDir(), kind == QStringLiteral("dir"));
        if (garbage || fault) {
            QCOMPARE(readFile(rig.dir.filePath(setAside.first())), bytes);
        }
    }

    void homesComeFromTheNewestSnapshotWhenMissing() {
        Rig rig;
        {
            auto memory = rig.memory();
            memory->remember(nudged(desk(), 4, 50), laptopOnly);
            rig.clock.advance(1h);
            memory->remember(desk(), both);
        }
        QVERIFY(QFile::remove(rig.path("topology.homes.json")));
        auto memory = rig.memory();
        QVERIFY(memory->homes().isEmpty());
        QVERIFY(memory->layoutForSettled(laptopOnly, desk()));
        QCOMPARE(memory->homes().value(widgetId(1)).displayID, QStringLiteral("monitor"));
        QCOMPARE(readJson(rig.path("topology.homes.json")).array().size(), 4);
    }

    void writeFailureKeepsTheMemory() {
        Rig rig;
        const QString blocked = rig.path("blocked");
        QVERIFY(writeFile(blocked, "a file where a directory should be"));
        TopologyMemory memory(rig.watcher, rig.clock, blocked + QStringLiteral("/topology.json"));
        QTest::ignoreMessage(QtCriticalMsg,
                             QRegularExpression(QStringLiteral("^could not save topology memory")));
        QTest::ignoreMessage(QtCriticalMsg,
                             QRegularExpression(QStringLiteral("^could not save widget homes")));
        memory.remember(desk(), both);
        QCOMPARE(memory.configurationCount(), 1);
        QCOMPARE(memory.homes().size(), 4);
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestTopologyMemory)
#include "tst_topologymemory.moc"
