#include "files/TrashBehaviour.h"

#include "files/DroppedPaths.h"
#include "platform/Scheduler.h"
#include "platform/Trash.h"
#include "platform/Workspace.h"
#include "readings/SampleRunner.h"
#include "text/L.h"

#include <QLoggingCategory>

namespace tw {

Q_LOGGING_CATEGORY(lcTrashTile, "com.tarnwick.app.Trash")

using namespace std::chrono_literals;

TrashBehaviour::TrashBehaviour(Trash& trash, Workspace& workspace, Scheduler& scheduler,
                               SampleRunner& runner, QObject* parent)
    : TileBehaviour(parent)
    , m_trash(trash)
    , m_workspace(workspace)
    , m_scheduler(scheduler)
    , m_runner(runner) {
    m_view.available = m_trash.isAvailable();
    m_view.counting = m_view.available;
    // Trashing from a file manager touches both folders at once: one count for the burst.
    const auto settle = [this] {
        m_settle = m_scheduler.singleShot(300ms, 200ms, this, [this] { recount(); });
    };
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, settle);
}

void TrashBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    const bool inView = std::any_of(tiles.cbegin(), tiles.cend(),
                                    [](const BehaviourTile& tile) { return tile.inView; });
    if (inView == m_inView || !m_view.available) {
        return;
    }
    m_inView = inView;
    if (!m_inView) {
        // Nobody looks: no watching and no counting until somebody does.
        if (!m_watcher.directories().isEmpty()) {
            m_watcher.removePaths(m_watcher.directories());
        }
        return;
    }
    watch();
    recount();
}

void TrashBehaviour::watch() {
    // A disk's trash appears when something is first trashed there: watched from then on.
    QStringList fresh = m_trash.watchedFolders();
    fresh.removeIf([watched = m_watcher.directories()](const QString& folder) {
        return watched.contains(folder);
    });
    if (!fresh.isEmpty()) {
        m_watcher.addPaths(fresh);
    }
}

void TrashBehaviour::recount() {
    if (m_busy) {
        m_again = true;
        return;
    }
    m_busy = true;
    runSample(
        m_runner, this, [&trash = m_trash] { return trash.contents(); },
        [this](const Trash::Contents& contents) {
            m_busy = false;
            if (m_inView) {
                watch();
            }
            TrashView next = m_view;
            next.contents = contents;
            next.counting = false;
            if (next.contents.items == 0) {
                next.confirming = false;
            }
            setView(next);
            if (std::exchange(m_again, false)) {
                recount();
            }
        });
}

bool TrashBehaviour::press(const WidgetInstance& tile, const QString& command) {
    Q_UNUSED(tile)
    if (!m_view.available) {
        return false;
    }
    TrashView next = m_view;
    if (command == QLatin1String("empty")) {
        if (m_view.contents.items == 0) {
            return true;
        }
        next.confirming = true;
        m_confirmEnds = m_scheduler.singleShot(confirmWait, 500ms, this, [this] {
            TrashView later = m_view;
            later.confirming = false;
            setView(later);
        });
    } else if (command == QLatin1String("cancel")) {
        next.confirming = false;
        m_confirmEnds.cancel();
    } else if (command == QLatin1String("confirm")) {
        if (!m_view.confirming) {
            return true;
        }
        next.confirming = false;
        m_confirmEnds.cancel();
        next.message = L("trash.emptying", QStringLiteral("Emptying…"));
        next.problem = false;
        setView(next);
        m_busy = true;
        runSample(
            m_runner, this, [&trash = m_trash] { return trash.empty(); },
            [this](const Trash::Result& result) {
                m_busy = false;
                show(result.ok() ? L("trash.emptied", QStringLiteral("Trash emptied"))
                                 : result.error,
                     !result.ok());
                recount();
            });
        return true;
    } else if (command == QLatin1String("open")) {
        const LaunchResult opened = m_workspace.open(m_trash.location());
        if (!opened.isSuccess()) {
            qCWarning(lcTrashTile, "could not open the trash: %s", qUtf8Printable(opened.error()));
            show(L("trash.error.open", QStringLiteral("The trash could not be opened")), true);
        }
        return true;
    } else {
        return false;
    }
    setView(next);
    return true;
}

bool TrashBehaviour::acceptsDrop(const WidgetInstance& tile, const QMimeData& data) const {
    Q_UNUSED(tile)
    return m_view.available && !DroppedPaths::of(data).isEmpty();
}

bool TrashBehaviour::drop(const WidgetInstance& tile, const QMimeData& data) {
    if (!acceptsDrop(tile, data)) {
        return false;
    }
    // A file from another disk is copied into the trash: never on the main thread.
    runSample(
        m_runner, this,
        [&trash = m_trash, paths = DroppedPaths::of(data)] { return trash.moveToTrash(paths); },
        [this](const Trash::Result& result) {
            if (!result.ok()) {
                show(result.error, true);
            } else {
                show(result.done == 1
                         ? L("trash.moved.one", QStringLiteral("Moved 1 item to the trash"))
                         : L("trash.moved.many", QStringLiteral("Moved %1 items to the trash"))
                               .arg(result.done),
                     false);
            }
            recount();
        });
    return true;
}

QList<TileBehaviour::MenuItem> TrashBehaviour::menuItems(const WidgetInstance& tile) const {
    Q_UNUSED(tile)
    if (!m_view.available) {
        return {};
    }
    QList<MenuItem> items{
        {L("trash.menu.open", QStringLiteral("Open Trash")), QStringLiteral("open")}};
    if (m_view.contents.items > 0) {
        items.append(
            {L("trash.menu.empty", QStringLiteral("Empty Trash…")), QStringLiteral("empty")});
    }
    return items;
}

void TrashBehaviour::show(const QString& message, bool problem) {
    TrashView next = m_view;
    next.message = message;
    next.problem = problem;
    setView(next);
    m_messageEnds = m_scheduler.singleShot(messageTime, 1s, this, [this] {
        TrashView later = m_view;
        later.message.clear();
        later.problem = false;
        setView(later);
    });
}

void TrashBehaviour::setView(const TrashView& view) {
    if (view == m_view) {
        return;
    }
    m_view = view;
    Q_EMIT changed(QUuid());
}

} // namespace tw
