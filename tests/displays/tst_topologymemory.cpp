#include "DisplayFixtures.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "NotAFile.h"
#include "displays/LayoutProfileResolver.h"
#include "displays/ScreenTopologyWatcher.h"
#include "displays/TopologyMemory.h"
#include "platform/null/FixedDisplays.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace std::chrono_literals;

namespace tw {

using namespace test;

namespace {

const LayoutDisplay laptop =
    withVisibleFrame(screenAt(QStringLiteral("laptop"), 0, 0, 1512, 982, Role::main,
                              QStringLiteral("Built-in Retina Display")),
                     {0, 0, 1512, 950});
const LayoutDisplay monitor = screenAt(QStringLiteral("monitor"), 1512, 0, 2560, 1440,
                                       Role::secondary, QStringLiteral("LG HDR 4K"));
const QList<LayoutDisplay> both{laptop, monitor};
const QList<LayoutDisplay> laptopOnly{laptop};

// Three tiles on the monitor (a group in its top-right corner, one at its bottom left) and one
// on the laptop.
GridLayout desk() {
    return layoutOf(
        {widgetAt(1, WidgetSize::large, 3848, 1420), widgetAt(2, WidgetSize::small, 3740, 1420),
         widgetAt(3, WidgetSize::wide, 1544, 140), widgetAt(4, WidgetSize::small, 24, 926)});
}

ScreenInfo screenInfo(const LayoutDisplay& display) {
    const auto rect = [](const LayoutDisplayRect& r) {
        return QRectF(r.x, r.y, r.width, r.height);
    };
    return ScreenInfo{display.id, display.name, rect(display.frame), rect(display.visibleFrame),
                      display.isMain};
}

GridLayout nudged(GridLayout layout, int n, double dx) {
    for (WidgetInstance& widget : layout.instances) {
        if (widget.id == widgetId(n)) {
            widget.posX = *widget.posX + dx;
        }
    }
    return layout;
}

GridLayout without(GridLayout layout, int n) {
    layout.instances.removeIf([n](const WidgetInstance& w) { return w.id == widgetId(n); });
    return layout;
}

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

} // namespace

class TestTopologyMemory : public QObject {
    Q_OBJECT

    struct Rig {
        QTemporaryDir dir;
        ManualClock clock;
        ManualScheduler scheduler{&clock};
        FixedDisplays displays{{screenInfo(laptop), screenInfo(monitor)}};
        ScreenTopologyWatcher watcher{displays, scheduler};

        Rig() { watcher.start(); }
        QString path(const char* name) const { return dir.filePath(QLatin1String(name)); }
        std::unique_ptr<TopologyMemory> memory() {
            return std::make_unique<TopologyMemory>(watcher, clock, path("topology.json"));
        }
    };

private Q_SLOTS:
    void rememberWritesBothFiles() {
        Rig rig;
        auto memory = rig.memory();
        QCOMPARE(memory->homesPath(), rig.path("topology.homes.json"));
        memory->remember(desk(), both);

        const QString signature = LayoutProfileResolver::topologySignature(both);
        QCOMPARE(memory->currentSignature(), signature);
        const QJsonObject topology =
            QJsonDocument::fromJson(readAll(rig.path("topology.json"))).object();
        QCOMPARE(topology.keys(), QStringList{signature});
        const QJsonArray homes =
            QJsonDocument::fromJson(readAll(rig.path("topology.homes.json"))).array();
        QCOMPARE(homes.size(), 4);

        auto reloaded = rig.memory();
        QCOMPARE(reloaded->snapshots(), memory->snapshots());
        QCOMPARE(reloaded->homes(), memory->homes());
        QVERIFY(!reloaded->currentSignature());
        QVERIFY(!QFile::exists(reloaded->backupPath()));
    }

    void rememberRecordsNothingInDoubt_data() {
        QTest::addColumn<QString>("situation");
        QTest::newRow("settling") << "settling";
        QTest::newRow("asleep") << "asleep";
        QTest::newRow("no displays") << "no displays";
        QTest::newRow("unusable display") << "unusable display";
    }
    void rememberRecordsNothingInDoubt() {
        QFETCH(QString, situation);
        Rig rig;
        auto memory = rig.memory();
        QList<LayoutDisplay> displays = both;
        if (situation == QLatin1String("settling")) {
            rig.displays.setScreens({screenInfo(laptop)});
        } else if (situation == QLatin1String("asleep")) {
            Q_EMIT rig.displays.willSleep();
        } else if (situation == QLatin1String("no displays")) {
            displays.clear();
        } else {
            displays[1].visibleFrame.width = 1.0;
        }
        memory->remember(desk(), displays);
        QCOMPARE(memory->configurationCount(), 0);
        QVERIFY(memory->homes().isEmpty());
        QVERIFY(!QFile::exists(rig.path("topology.json")));
        QVERIFY(!QFile::exists(rig.path("topology.homes.json")));
    }

    // Unplug, resolve, nudge by 1 point, plug back: home. Unplug, nudge by 3 points, plug back:
    // the widget has a new home where the user put it.
    void parkedVisitorsGoHome() {
        Rig rig;
        auto memory = rig.memory();
        const GridLayout original = desk();
        memory->remember(original, both);

        QTest::ignoreMessage(QtInfoMsg,
                             "display configuration changed — placing every widget from its home");
        const auto unplugged = memory->layoutForSettled(laptopOnly, original);
        QVERIFY(unplugged);
        for (int n = 1; n <= 3; ++n) {
            const WidgetInstance& widget = widgetIn(*unplugged, n);
            QVERIFY2(*widget.posX >= 0 && *widget.posX + widget.pixelSize().width() <= 1512,
                     qPrintable(QString::number(n)));
            QVERIFY(memory->isVisitor(widgetId(n), laptopOnly));
        }
        QCOMPARE(widgetIn(*unplugged, 4), widgetIn(original, 4));
        QVERIFY(!memory->isVisitor(widgetId(4), laptopOnly));
        QCOMPARE(*widgetIn(*unplugged, 1).posX, 1512.0 - 20 - 204);
        QCOMPARE(*widgetIn(*unplugged, 1).posY, 950.0 - 20);

        memory->remember(*unplugged, laptopOnly);
        const GridLayout touched = nudged(*unplugged, 1, 1.0);
        memory->remember(touched, laptopOnly);
        for (int n = 1; n <= 3; ++n) {
            QCOMPARE(memory->homes().value(widgetId(n)).displayID, QStringLiteral("monitor"));
        }

        const auto replugged = memory->layoutForSettled(both, touched);
        QVERIFY(replugged);
        QCOMPARE(*replugged, original);
        memory->remember(*replugged, both);

        const auto again = memory->layoutForSettled(laptopOnly, *replugged);
        QVERIFY(again);
        const GridLayout dragged = nudged(*again, 2, -3.0);
        memory->remember(dragged, laptopOnly);
        QCOMPARE(memory->homes().value(widgetId(2)).displayID, QStringLiteral("laptop"));
        QVERIFY(!memory->isVisitor(widgetId(2), laptopOnly));

        const auto back = memory->layoutForSettled(both, dragged);
        QVERIFY(back);
        QCOMPARE(widgetIn(*back, 2), widgetIn(dragged, 2));
        QCOMPARE(widgetIn(*back, 1), widgetIn(original, 1));
        QCOMPARE(widgetIn(*back, 3), widgetIn(original, 3));
    }

    void removedWhileAwayLosesItsHome() {
        Rig rig;
        auto memory = rig.memory();
        memory->remember(desk(), both);
        const auto unplugged = memory->layoutForSettled(laptopOnly, desk());
        QVERIFY(unplugged);
        memory->remember(without(*unplugged, 3), laptopOnly);
        QVERIFY(!memory->homes().contains(widgetId(3)));
        QCOMPARE(memory->homes().size(), 3);
        QCOMPARE(QJsonDocument::fromJson(readAll(memory->homesPath())).array().size(), 3);
    }

    void newcomerIsCapturedOnTheConfigurationBeingLeft() {
        Rig rig;
        auto memory = rig.memory();
        memory->remember(desk(), both);
        GridLayout current = desk();
        current.instances.append(widgetAt(5, WidgetSize::small, 2000, 700));
        QVERIFY(!memory->homes().contains(widgetId(5)));

        const auto unplugged = memory->layoutForSettled(laptopOnly, current);
        QVERIFY(unplugged);
        QCOMPARE(memory->homes().value(widgetId(5)).displayID, QStringLiteral("monitor"));
        QVERIFY(memory->isVisitor(widgetId(5), laptopOnly));
        const auto replugged = memory->layoutForSettled(both, *unplugged);
        QVERIFY(replugged);
        QCOMPARE(widgetIn(*replugged, 5), widgetIn(current, 5));
    }

    // A settled set with nothing to move gives no layout; a usable new set is still recorded,
    // anything else leaves the memory and its files as they were.
    void settledWithNothingToMove_data() {
        QTest::addColumn<QList<LayoutDisplay>>("settled");
        QTest::addColumn<bool>("recorded");
        QTest::newRow("a new set") << both << true;
        QTest::newRow("the same set again") << laptopOnly << false;
        QTest::newRow("no displays") << QList<LayoutDisplay>{} << false;
        QTest::newRow("a zero-sized display")
            << QList<LayoutDisplay>{laptop, withVisibleFrame(monitor, {1512, 0, 0, 0})} << false;
    }
    void settledWithNothingToMove() {
        QFETCH(QList<LayoutDisplay>, settled);
        QFETCH(bool, recorded);
        Rig rig;
        auto memory = rig.memory();
        const GridLayout onLaptop = layoutOf({widgetAt(4, WidgetSize::small, 24, 926)});
        memory->remember(onLaptop, laptopOnly);
        const QByteArray before = readAll(memory->filePath());
        QVERIFY(!memory->layoutForSettled(settled, onLaptop));
        const QList<LayoutDisplay>& current = recorded ? settled : laptopOnly;
        QCOMPARE(memory->currentSignature(), LayoutProfileResolver::topologySignature(current));
        QCOMPARE(memory->configurationCount(), recorded ? 2 : 1);
        QCOMPARE(readAll(memory->filePath()) != before, recorded);
    }

    void thirteenthConfigurationEvictsTheOldest() {
        Rig rig;
        auto memory = rig.memory();
        QStringList signatures;
        for (int i = 0; i < 13; ++i) {
            const QList<LayoutDisplay> displays{
                screenAt(QStringLiteral("laptop"), 0, 0, 1000 + i, 900, Role::main)};
            signatures.append(LayoutProfileResolver::topologySignature(displays));
            GridLayout layout = desk();
            layout.instances.append(widgetAt(10 + i, WidgetSize::small, 10, 500));
            if (i > 0) {
                layout.instances.removeIf([](const WidgetInstance& w) { return w.order == 4; });
            }
            memory->remember(layout, displays);
            rig.clock.advance(1min);
        }
        QCOMPARE(memory->configurationCount(), 12);
        QVERIFY(!memory->snapshots().contains(signatures.first()));
        QVERIFY(memory->snapshots().contains(signatures.last()));
        QCOMPARE(QJsonDocument::fromJson(readAll(memory->filePath())).object().size(), 12);
        QCOMPARE(memory->homes().size(), 4);
    }

    void olderFileIsReKeyedAndBackedUpOnce() {
        Rig rig;
        {
            auto memory = rig.memory();
            memory->remember(desk(), both);
            rig.clock.advance(1h);
            memory->remember(nudged(desk(), 4, 100), laptopOnly);
        }
        // Rewrite the file as an older version did: other keys, no anchors, and two records of
        // one display set.
        QJsonObject current = QJsonDocument::fromJson(readAll(rig.path("topology.json"))).object();
        QJsonObject old;
        int key = 0;
        for (auto it = current.begin(); it != current.end(); ++it) {
            QJsonObject snapshot = it.value().toObject();
            QJsonArray placements;
            for (const QJsonValue& value : snapshot.value(QStringLiteral("placements")).toArray()) {
                QJsonObject placement = value.toObject();
                for (const char* field : {"anchorH", "anchorV", "offsetX", "offsetY"}) {
                    placement.remove(QLatin1String(field));
                }
                placements.append(placement);
            }
            snapshot.insert(QStringLiteral("placements"), placements);
            old.insert(QStringLiteral("old-%1").arg(++key), snapshot);
        }
        QJsonObject stale = old.value(QStringLiteral("old-1")).toObject();
        stale.insert(QStringLiteral("capturedAt"), -1000.0);
        old.insert(QStringLiteral("old-0"), stale);
        const QByteArray oldBytes = QJsonDocument(old).toJson();
        writeFile(rig.path("topology.json"), oldBytes);

        QTest::ignoreMessage(QtInfoMsg, "topology memory migrated: 3 → 2 configuration(s)");
        auto migrated = rig.memory();
        QCOMPARE(migrated->configurationCount(), 2);
        QCOMPARE(readAll(migrated->backupPath()), oldBytes);
        const QJsonObject saved =
            QJsonDocument::fromJson(readAll(rig.path("topology.json"))).object();
        QCOMPARE(saved.keys(), QStringList(migrated->snapshots().keys()));
        for (const LayoutProfileSnapshot& snapshot : migrated->snapshots()) {
            QVERIFY(snapshot.capturedAt > LayoutProfileSnapshot::distantPast());
            QVERIFY(snapshot.capturedAt.toSecsSinceEpoch() > 978307200);
            for (const LayoutWidgetPlacement& placement : snapshot.placements) {
                QVERIFY(placement.isAnchored());
            }
        }

        // Loaded again: nothing to migrate, and the backup keeps the very first file.
        writeFile(rig.path("topology.json"), QJsonDocument(old).toJson(QJsonDocument::Compact));
        auto twice = rig.memory();
        QCOMPARE(readAll(twice->backupPath()), oldBytes);
        auto settled = rig.memory();
        QCOMPARE(settled->snapshots(), twice->snapshots());
    }

    void placementlessSnapshotsAreDropped() {
        Rig rig;
        {
            auto memory = rig.memory();
            memory->remember(desk(), both);
        }
        QJsonObject file = QJsonDocument::fromJson(readAll(rig.path("topology.json"))).object();
        QJsonObject empty = file.begin().value().toObject();
        empty.insert(QStringLiteral("placements"), QJsonArray());
        file.insert(QStringLiteral("empty"), empty);
        file.insert(QStringLiteral("garbage"), QStringLiteral("not a snapshot"));
        writeFile(rig.path("topology.json"), QJsonDocument(file).toJson());
        QTest::ignoreMessage(QtInfoMsg, "dropped 1 placement-less snapshot(s)");
        auto memory = rig.memory();
        QCOMPARE(memory->configurationCount(), 1);
    }

    // An unreadable file is set aside, never overwritten; whatever is not a file at all is left
    // alone; either way the memory starts empty, and the start returns (a FIFO or /dev/zero
    // would hang a plain read).
    void unreadableFilesAreSetAsideOrLeftAlone_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kind");
        for (const char* name : {"topology.json", "topology.homes.json"}) {
            for (const char* kind : {"garbage", "fifo", "zero", "dir", "dangling"}) {
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
        QVERIFY(QFile::remove(path));
        if (kind == QStringLiteral("garbage")) {
            writeFile(path, "[nonsense");
        } else {
            QVERIFY(placeNotAFile(kind, path));
        }
        const bool garbage = kind == QStringLiteral("garbage");
        if (garbage && name == QStringLiteral("topology.json")) {
            QTest::ignoreMessage(QtWarningMsg, "topology memory unreadable — starting fresh");
        }
        auto memory = rig.memory();
        const bool homes = name == QStringLiteral("topology.homes.json");
        QCOMPARE(memory->configurationCount(), homes ? 1 : 0);
        QCOMPARE(memory->homes().size(), homes ? 0 : 4);
        const QString stem = QFileInfo(path).completeBaseName();
        const QStringList setAside =
            QDir(rig.dir.path()).entryList({stem + QStringLiteral(".2*.corrupt")}, QDir::Files);
        QCOMPARE(setAside.size(), garbage ? 1 : 0);

        memory->remember(desk(), both);
        QCOMPARE(QFileInfo(path).isFile(), garbage);
        QCOMPARE(QFileInfo(path).isSymLink(),
                 kind == QStringLiteral("zero") || kind == QStringLiteral("dangling"));
        QCOMPARE(QFileInfo(path).isDir(), kind == QStringLiteral("dir"));
        if (garbage) {
            QCOMPARE(readAll(rig.dir.filePath(setAside.first())), QByteArrayLiteral("[nonsense"));
        }
    }

    // A number out of range costs the member it is in, in either file.
    void aSmallFaultCostsOnlyItsMember() {
        Rig rig;
        rig.memory()->remember(desk(), both);
        for (const char* name : {"topology.json", "topology.homes.json"}) {
            QByteArray bytes = readAll(rig.path(name));
            bytes.insert(1, bytes.startsWith('{') ? "\"x\":1e999," : "1e999,");
            writeFile(rig.path(name), bytes);
        }
        auto memory = rig.memory();
        QCOMPARE(memory->configurationCount(), 1);
        QCOMPARE(memory->homes().size(), 4);
        QCOMPARE(QDir(rig.dir.path()).entryList({QStringLiteral("*.corrupt")}).size(), 2);
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
        QCOMPARE(QJsonDocument::fromJson(readAll(rig.path("topology.homes.json"))).array().size(),
                 4);
    }

    void isVisitor_data() {
        QTest::addColumn<QList<LayoutDisplay>>("displays");
        QTest::addColumn<int>("widget");
        QTest::addColumn<bool>("visitor");
        LayoutDisplay renamedId = monitor;
        renamedId.id = QStringLiteral("monitor-after-driver-update");
        renamedId.name = QStringLiteral("lg hdr 4k");
        QTest::newRow("home present") << both << 1 << false;
        QTest::newRow("home away") << laptopOnly << 1 << true;
        QTest::newRow("same name, other id")
            << QList<LayoutDisplay>{laptop, renamedId} << 1 << false;
        QTest::newRow("no displays") << QList<LayoutDisplay>{} << 4 << true;
        QTest::newRow("no home") << laptopOnly << 99 << false;
    }
    void isVisitor() {
        QFETCH(QList<LayoutDisplay>, displays);
        QFETCH(int, widget);
        QFETCH(bool, visitor);
        Rig rig;
        auto memory = rig.memory();
        memory->remember(desk(), both);
        QCOMPARE(memory->isVisitor(widgetId(widget), displays), visitor);
    }

    void writeFailureKeepsTheMemory() {
        Rig rig;
        const QString blocked = rig.path("blocked");
        writeFile(blocked, "a file where a directory should be");
        TopologyMemory memory(rig.watcher, rig.clock, blocked + QStringLiteral("/topology.json"));
        QTest::ignoreMessage(
            QtCriticalMsg, QRegularExpression(QStringLiteral("^could not save topology memory: ")));
        QTest::ignoreMessage(QtCriticalMsg,
                             QRegularExpression(QStringLiteral("^could not save widget homes: ")));
        memory.remember(desk(), both);
        QCOMPARE(memory.configurationCount(), 1);
        QCOMPARE(memory.homes().size(), 4);
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestTopologyMemory)
#include "tst_topologymemory.moc"
