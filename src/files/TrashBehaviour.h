// The trash tiles on the desktop: counted off the main thread whenever the trash changes while a
// tile is in view, files dropped on a tile go into the trash, and emptying asks on the tile first.
#pragma once

#include "files/TrashView.h"
#include "model/TileBehaviour.h"
#include "platform/ScheduledTask.h"

#include <QFileSystemWatcher>

namespace tw {

class SampleRunner;
class Scheduler;
class Trash;
class Workspace;

class TrashBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    // How long the tile waits for the person to confirm, and shows what a drop did.
    static constexpr std::chrono::seconds confirmWait{8};
    static constexpr std::chrono::seconds messageTime{6};

    // All must outlive this; `runner` counts and empties away from the main thread.
    TrashBehaviour(Trash& trash, Workspace& workspace, Scheduler& scheduler, SampleRunner& runner,
                   QObject* parent = nullptr);

    const TrashView& view() const { return m_view; }

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;
    bool takesDrops() const override { return true; }
    bool acceptsDrop(const WidgetInstance& tile, const QMimeData& data) const override;
    bool drop(const WidgetInstance& tile, const QMimeData& data) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

private:
    void recount();
    void watch();
    void show(const QString& message, bool problem);
    void setView(const TrashView& view);

    Trash& m_trash;
    Workspace& m_workspace;
    Scheduler& m_scheduler;
    SampleRunner& m_runner;
    QFileSystemWatcher m_watcher;
    TrashView m_view;
    bool m_inView = false;
    bool m_busy = false;
    bool m_again = false;
    ScheduledTask m_settle;
    ScheduledTask m_confirmEnds;
    ScheduledTask m_messageEnds;
};

} // namespace tw
