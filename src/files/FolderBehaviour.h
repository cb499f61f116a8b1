// The folder tiles: each in view lists its folder away from the main thread and again whenever
// the folder changes (a watcher, no polling); a press opens an item with its application.
#pragma once

#include "files/FolderChooser.h"
#include "files/FolderView.h"
#include "model/TileBehaviour.h"
#include "platform/ScheduledTask.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QSet>

namespace tw {

class GridStore;
class SampleRunner;
class Scheduler;
class Workspace;

class FolderBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    struct Services {
        GridStore& grid;
        Workspace& workspace;
        Scheduler& scheduler;
        SampleRunner& runner;
        FolderChooser chooseFolder;
        // The folder of a tile whose "path" is empty.
        QString defaultFolder;
    };

    // Items kept per tile: more than the largest tile shows.
    static constexpr int shownLimit = 60;

    explicit FolderBehaviour(Services services, QObject* parent = nullptr);

    // The tile's folder as last read; nullopt before the first reading ends.
    std::optional<FolderView> view(const QUuid& tile) const;
    QString folderOf(const WidgetSettings& settings) const;

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

private:
    struct Shown {
        QString path;
        FolderListing::Sort sort = FolderListing::Sort::name;
        FolderListing::Hidden hidden = FolderListing::Hidden::left;

        bool operator==(const Shown&) const = default;
    };
    void read(const QUuid& tile);
    void rewatch();

    Services m_services;
    QHash<QUuid, Shown> m_shown;
    QHash<QUuid, FolderView> m_views;
    QSet<QUuid> m_dirty;
    QFileSystemWatcher m_watcher;
    ScheduledTask m_settle;
};

} // namespace tw
