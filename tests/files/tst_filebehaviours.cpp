// The file tiles' behaviours over real folders in a temporary directory, a manual clock and
// scheduler, and work run inline: what a drop, a press and a folder's change do.
#include "Files.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ScriptedReadings.h"
#include "TestRows.h"
#include "files/DropZoneBehaviour.h"
#include "files/FolderBehaviour.h"
#include "files/PhotosBehaviour.h"
#include "files/TrashBehaviour.h"
#include "grid/GridStore.h"
#include "model/WidgetRegistry.h"
#include "platform/linux/XdgTrash.h"
#include "platform/null/NullWorkspace.h"

#include <QImage>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;

namespace {

struct Fixture {
    QTemporaryDir dir;
    ManualClock clock{QDateTime(QDate(2026, 11, 24), QTime(10, 0))};
    ManualScheduler scheduler{&clock};
    WidgetRegistry registry;
    GridStore grid{{.clock = clock, .scheduler = scheduler, .registry = registry},
                   dir.filePath(QStringLiteral("grid.json"))};
    NullWorkspace workspace;
    InlineRunner runner;
    QString chosen;
    FolderChooser chooser = [this](const QString&, const QString&) { return chosen; };

    QString path(const QString& relative) const { return dir.filePath(relative); }
    WidgetInstance add(const char* kind, const WidgetSettings& settings = {}) {
        return *grid.addFree(QLatin1String(kind), std::nullopt, settings);
    }
    WidgetInstance current(const QUuid& id) const { return *grid.instance(id); }
};

QMimeData* dragOf(const QStringList& paths) {
    auto* data = new QMimeData;
    QList<QUrl> urls;
    for (const QString& path : paths) {
        urls.append(QUrl::fromLocalFile(path));
    }
    data->setUrls(urls);
    return data;
}

bool writePicture(const QString& path, const QColor& colour) {
    QImage image(640, 480, QImage::Format_RGB32);
    image.fill(colour);
    return image.save(path);
}

} // namespace

class TestFileBehaviours : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Dropped files land under free names, are kept newest first, and what failed says so
    // without touching the source.
    void dropZone() {
        Fixture f;
        QVERIFY(QDir().mkpath(f.path(QStringLiteral("inbox"))));
        QVERIFY(writeFile(f.path(QStringLiteral("inbox/a.txt")), "older"));
        QVERIFY(writeFile(f.path(QStringLiteral("desk/a.txt")), "new"));
        QVERIFY(writeFile(f.path(QStringLiteral("desk/b.txt")), "bee"));
        DropZoneBehaviour zone({.grid = f.grid,
                                .workspace = f.workspace,
                                .clock = f.clock,
                                .scheduler = f.scheduler,
                                .runner = f.runner,
                                .chooseFolder = f.chooser,
                                .freeSpace = FileTransfer::diskFreeSpace,
                                .defaultFolder = f.path(QStringLiteral("inbox"))});
        const WidgetInstance tile = f.add("dropzone");
        const std::unique_ptr<QMimeData> drag(
            dragOf({f.path(QStringLiteral("desk/a.txt")), f.path(QStringLiteral("desk/b.txt"))}));
        QVERIFY(zone.acceptsDrop(tile, *drag));
        QVERIFY(zone.drop(tile, *drag));
        QCOMPARE(readFile(f.path(QStringLiteral("inbox/a.txt"))), QByteArray("older"));
        QCOMPARE(readFile(f.path(QStringLiteral("inbox/a (2).txt"))), QByteArray("new"));
        QVERIFY(!QFileInfo::exists(f.path(QStringLiteral("desk/a.txt"))));
        DropZoneView view = zone.view(tile.id, *f.current(tile.id).settings);
        QCOMPARE(view.items.size(), 2);
        QCOMPARE(view.items.first().name, QStringLiteral("b.txt"));
        QCOMPARE(view.items.last().name, QStringLiteral("a (2).txt"));
        QVERIFY(view.problem.isEmpty());

        QVERIFY(zone.press(f.current(tile.id), QStringLiteral("open:1")));
        QCOMPARE(f.workspace.requests().last(),
                 QStringLiteral("open ") +
                     QUrl::fromLocalFile(f.path(QStringLiteral("inbox/a (2).txt")))
                         .toString(QUrl::FullyEncoded));

        // The folder goes away: no drops, and a press asks for another.
        QVERIFY(QDir(f.path(QStringLiteral("inbox"))).removeRecursively());
        const WidgetInstance now = f.current(tile.id);
        QVERIFY(!zone.acceptsDrop(now, *drag));
        QVERIFY(zone.view(now.id, *now.settings).folderMissing);
        f.chosen = f.path(QStringLiteral("desk"));
        QVERIFY(zone.press(now, QStringLiteral("folder")));
        QCOMPARE(f.current(tile.id).settings->value(QStringLiteral("folder")), f.chosen);

        const std::unique_ptr<QMimeData> remote(new QMimeData);
        remote->setUrls({QUrl(QStringLiteral("https://example.org/x.pdf"))});
        QVERIFY(!zone.acceptsDrop(f.current(tile.id), *remote));
    }

    void trash() {
        Fixture f;
        XdgTrash trash(f.path(QStringLiteral("Trash")), f.clock);
        TrashBehaviour tiles(trash, f.workspace, f.scheduler, f.runner);
        const WidgetInstance tile = f.add("trash");
        tiles.setTiles({{.instance = tile, .inView = true}});
        QCOMPARE(tiles.view().contents, Trash::Contents{});
        QVERIFY(!tiles.view().counting);

        QVERIFY(writeFile(f.path(QStringLiteral("doomed.txt")), "12345"));
        const std::unique_ptr<QMimeData> drag(dragOf({f.path(QStringLiteral("doomed.txt"))}));
        QVERIFY(tiles.drop(tile, *drag));
        QCOMPARE(tiles.view().contents, (Trash::Contents{.items = 1, .bytes = 5}));
        QVERIFY(!tiles.view().message.isEmpty() && !tiles.view().problem);

        // Emptying takes two presses; a confirmation not given in time lapses.
        QVERIFY(tiles.press(tile, QStringLiteral("confirm")));
        QCOMPARE(tiles.view().contents.items, 1);
        QVERIFY(tiles.press(tile, QStringLiteral("empty")));
        QVERIFY(tiles.view().confirming);
        f.scheduler.advance(TrashBehaviour::confirmWait + 1s);
        QVERIFY(!tiles.view().confirming);
        QVERIFY(tiles.press(tile, QStringLiteral("empty")));
        QVERIFY(tiles.press(tile, QStringLiteral("confirm")));
        QCOMPARE(tiles.view().contents, Trash::Contents{});
        QVERIFY(!tiles.view().confirming);
        QCOMPARE(tiles.menuItems(tile).size(), 1);
    }

    // Pictures decode at the tile's pixels, turn with the interval and fade; a broken file is
    // skipped and counted; out of view nothing is held.
    void photos() {
        Fixture f;
        const QString folder = f.path(QStringLiteral("Pictures"));
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(writePicture(folder + QStringLiteral("/1.png"), Qt::red));
        QVERIFY(writePicture(folder + QStringLiteral("/2.png"), Qt::green));
        QVERIFY(writeFile(folder + QStringLiteral("/3.png"), "not a picture"));
        PhotosBehaviour photos({.grid = f.grid,
                                .workspace = f.workspace,
                                .clock = f.clock,
                                .scheduler = f.scheduler,
                                .runner = f.runner,
                                .chooseFolder = f.chooser,
                                .defaultFolder = folder,
                                .pixelRatio = 2});
        const WidgetInstance tile =
            f.add("photos", {{QStringLiteral("interval"), QStringLiteral("10")},
                             {QStringLiteral("order"), QStringLiteral("name")}});
        QCOMPARE(photos.view(tile.id).state, PhotosView::State::loading);
        photos.setTiles({{.instance = tile, .inView = true}});
        QSet<QRgb> seen;
        int fading = 0;
        for (int second = 0; second < 40; ++second) {
            const PhotosView view = photos.view(tile.id);
            QCOMPARE(view.state, PhotosView::State::showing);
            QCOMPARE(view.current.size(), photos.pixelsOf(tile));
            seen.insert(view.current.pixel(0, 0));
            fading += view.fade < 1 ? 1 : 0;
            f.scheduler.advance(1s);
        }
        QCOMPARE(seen.size(), 2);
        QCOMPARE(photos.view(tile.id).unreadable, 1);
        QCOMPARE(photos.view(tile.id).pictures, 2);
        QVERIFY(fading > 0);

        photos.setTiles({{.instance = tile, .inView = false}});
        QVERIFY(photos.view(tile.id).current.isNull());

        // A second tile of a kind starts without the first one's folder: it is set afterwards.
        const QUuid lostID = f.add("photos").id;
        f.grid.setSetting(lostID, QStringLiteral("folder"), f.path(QStringLiteral("gone")));
        const WidgetInstance lost = f.current(lostID);
        photos.setTiles({{.instance = lost, .inView = true}});
        QCOMPARE(photos.view(lost.id).state, PhotosView::State::noFolder);
        f.chosen = folder;
        QVERIFY(photos.press(lost, QStringLiteral("choose")));
        QCOMPARE(f.current(lost.id).settings->value(QStringLiteral("folder")), folder);
    }

    // The tile follows its folder without polling: a new file shows once the watcher settles.
    void folder() {
        Fixture f;
        const QString shown = f.path(QStringLiteral("Desktop"));
        QVERIFY(writeFile(shown + QStringLiteral("/b.txt"), "b"));
        QVERIFY(QDir().mkpath(shown + QStringLiteral("/Album")));
        FolderBehaviour folders({.grid = f.grid,
                                 .workspace = f.workspace,
                                 .scheduler = f.scheduler,
                                 .runner = f.runner,
                                 .chooseFolder = f.chooser,
                                 .defaultFolder = shown});
        const WidgetInstance tile = f.add("folder");
        QVERIFY(!folders.view(tile.id));
        folders.setTiles({{.instance = tile, .inView = true}});
        QCOMPARE(folders.view(tile.id)->listing.total, 2);
        QCOMPARE(folders.view(tile.id)->listing.items.first().name, QStringLiteral("Album"));
        QSignalSpy changed(&folders, &TileBehaviour::changed);
        QVERIFY(writeFile(shown + QStringLiteral("/a.txt"), "a"));
        QTRY_VERIFY((f.scheduler.advance(300ms), folders.view(tile.id)->listing.total == 3));
        QCOMPARE(changed.count(), 1);
        QVERIFY(folders.press(tile, QStringLiteral("open:1")));
        QCOMPARE(
            f.workspace.requests().last(),
            QStringLiteral("open ") +
                QUrl::fromLocalFile(shown + QStringLiteral("/a.txt")).toString(QUrl::FullyEncoded));
    }
};

QTEST_GUILESS_MAIN(TestFileBehaviours)
#include "tst_filebehaviours.moc"
