// The drop zone tiles: files dropped on one are moved or copied into its folder away from the
// main thread, under a free name, and the last of them are kept in its "items" setting.
#pragma once

#include "files/DropZoneView.h"
#include "files/FileTransfer.h"
#include "files/FolderChooser.h"
#include "model/TileBehaviour.h"
#include "platform/ScheduledTask.h"

#include <QHash>

#include <map>

namespace tw {

class Clock;
class GridStore;
class SampleRunner;
class Scheduler;
class Workspace;

class DropZoneBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    struct Services {
        GridStore& grid;
        Workspace& workspace;
        const Clock& clock;
        Scheduler& scheduler;
        SampleRunner& runner;
        FolderChooser chooseFolder;
        FileTransfer::FreeSpace freeSpace = FileTransfer::diskFreeSpace;
        // Where drops go until the person chooses ("folder" empty).
        QString defaultFolder;
    };

    static constexpr std::chrono::seconds problemTime{20};

    explicit DropZoneBehaviour(Services services, QObject* parent = nullptr);

    // The tile's view from its settings; a sample for a tile this does not know.
    DropZoneView view(const QUuid& tile, const WidgetSettings& settings) const;
    QString folderOf(const WidgetSettings& settings) const;

    bool press(const WidgetInstance& tile, const QString& command) override;
    bool takesDrops() const override { return true; }
    bool acceptsDrop(const WidgetInstance& tile, const QMimeData& data) const override;
    bool drop(const WidgetInstance& tile, const QMimeData& data) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

private:
    struct Outcome {
        QList<DroppedItem> arrived;
        QString problem;
    };
    void finish(const QUuid& tile, const Outcome& outcome);
    void setProblem(const QUuid& tile, const QString& problem);

    Services m_services;
    QHash<QUuid, QString> m_problems;
    std::map<QUuid, ScheduledTask> m_problemEnds;
};

} // namespace tw
