// The photo tiles: each in view shows its folder as a slideshow, its pictures decoded away from
// the main thread at the tile's pixel size once (the next one before its turn), a fade paced here,
// nothing held or timed for a tile out of view.
#pragma once

#include "files/FolderChooser.h"
#include "files/PhotoFolder.h"
#include "files/PhotosView.h"
#include "files/Slideshow.h"
#include "model/TileBehaviour.h"
#include "platform/ScheduledTask.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QImage>
#include <QSet>
#include <QSize>

#include <map>

namespace tw {

class Clock;
class GridStore;
class SampleRunner;
class Scheduler;
class Workspace;

class PhotosBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    struct Services {
        GridStore& grid;
        Workspace& workspace;
        const Clock& clock;
        Scheduler& scheduler;
        SampleRunner& runner;
        FolderChooser chooseFolder;
        // The folder of a tile whose "folder" is empty: the person's Pictures.
        QString defaultFolder;
        // The displays' largest pixel ratio: pictures are decoded for it.
        qreal pixelRatio = 1;
    };

    static constexpr std::chrono::milliseconds frameInterval{40};

    explicit PhotosBehaviour(Services services, QObject* parent = nullptr);

    // What the tile shows now; a tile out of view or unknown is loading.
    PhotosView view(const QUuid& tile) const;
    QString folderOf(const WidgetSettings& settings) const;
    // The pixels a picture is decoded to for the tile.
    QSize pixelsOf(const WidgetInstance& tile) const;

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

private:
    struct Album {
        PhotoFolder folder;
        bool scanned = false;
        QSet<QString> unreadable;
        QStringList readable;
    };
    struct Show {
        QString folder;
        Slideshow slideshow;
        QSize pixels;
        QHash<QString, QImage> images;
        QSet<QString> decoding;
        // The picture last shown whole, kept while the next is still decoding.
        QString shown;
        ScheduledTask turn;
        ScheduledTask frames;
    };

    void scan(const QString& folder);
    void schedule(const QUuid& tile);
    void decode(const QUuid& tile, const QString& path);
    Slideshow slideshowOf(const QUuid& tile) const;
    QString pictureOf(const QUuid& tile, int index) const;
    qint64 nowMs() const;

    Services m_services;
    QHash<QString, Album> m_albums;
    std::map<QUuid, Show> m_shows;
    QHash<QUuid, qint64> m_skipped;
    QFileSystemWatcher m_watcher;
    QSet<QString> m_changedFolders;
    ScheduledTask m_rescan;
};

} // namespace tw
