#include "files/FolderBehaviour.h"

#include "grid/GridStore.h"
#include "platform/Scheduler.h"
#include "platform/Workspace.h"
#include "readings/SampleRunner.h"
#include "text/L.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QUrl>

namespace tw {

Q_LOGGING_CATEGORY(lcFolderTile, "com.tarnwick.app.Folder")

using namespace std::chrono_literals;

FolderBehaviour::FolderBehaviour(Services services, QObject* parent)
    : TileBehaviour(parent)
    , m_services(std::move(services)) {
    // A copy or an unpacked archive changes the folder many times a second: read once it settles.
    const auto settle = [this](const QString& path) {
        for (auto it = m_shown.cbegin(); it != m_shown.cend(); ++it) {
            if (QDir::cleanPath(it->path) == QDir::cleanPath(path) ||
                QFileInfo(it->path).absolutePath() == QDir::cleanPath(path)) {
                m_dirty.insert(it.key());
            }
        }
        m_settle = m_services.scheduler.singleShot(250ms, 250ms, this, [this] {
            const QSet<QUuid> dirty = std::exchange(m_dirty, {});
            for (const QUuid& tile : dirty) {
                read(tile);
            }
            rewatch();
        });
    };
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, settle);
}

QString FolderBehaviour::folderOf(const WidgetSettings& settings) const {
    QString path = settings.value(QStringLiteral("path")).trimmed();
    if (path.startsWith(QLatin1Char('~'))) {
        path = QDir::homePath() + path.mid(1);
    }
    return path.isEmpty() ? m_services.defaultFolder : QDir::cleanPath(path);
}

std::optional<FolderView> FolderBehaviour::view(const QUuid& tile) const {
    const auto found = m_views.constFind(tile);
    return found != m_views.constEnd() ? std::optional(*found) : std::nullopt;
}

void FolderBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QHash<QUuid, Shown> shown;
    for (const BehaviourTile& tile : tiles) {
        if (!tile.inView) {
            continue;
        }
        const WidgetSettings settings = tile.instance.settings.value_or(WidgetSettings());
        shown.insert(
            tile.instance.id,
            Shown{.path = folderOf(settings),
                  .sort = FolderListing::sortNamed(settings.value(QStringLiteral("sort"))),
                  .hidden = settings.value(QStringLiteral("hidden")) == QLatin1String("true")
                                ? FolderListing::Hidden::shown
                                : FolderListing::Hidden::left});
    }
    const QHash<QUuid, Shown> before = std::exchange(m_shown, shown);
    for (auto it = m_views.begin(); it != m_views.end();) {
        it = m_shown.contains(it.key()) ? std::next(it) : m_views.erase(it);
    }
    for (auto it = m_shown.cbegin(); it != m_shown.cend(); ++it) {
        if (before.value(it.key()) != *it || !m_views.contains(it.key())) {
            read(it.key());
        }
    }
    rewatch();
}

void FolderBehaviour::read(const QUuid& tile) {
    const Shown shown = m_shown.value(tile);
    runSample(
        m_services.runner, this,
        [shown] { return FolderListing::read(shown.path, shown.sort, shown.hidden, shownLimit); },
        [this, tile, shown](const FolderListing& listing) {
            // The tile may have gone or moved on to another folder meanwhile.
            if (m_shown.value(tile) != shown) {
                return;
            }
            const FolderView next{.path = shown.path, .listing = listing};
            if (m_views.value(tile) == next && m_views.contains(tile)) {
                return;
            }
            m_views.insert(tile, next);
            Q_EMIT changed(tile);
        });
}

void FolderBehaviour::rewatch() {
    // The folder itself, or its parent while it is missing, so that its coming back is seen.
    QStringList wanted;
    for (const Shown& shown : std::as_const(m_shown)) {
        const QString path =
            QFileInfo(shown.path).isDir() ? shown.path : QFileInfo(shown.path).absolutePath();
        if (QFileInfo(path).isDir() && !wanted.contains(path)) {
            wanted.append(path);
        }
    }
    const QStringList watched = m_watcher.directories();
    for (const QString& path : watched) {
        if (!wanted.contains(path)) {
            m_watcher.removePath(path);
        }
    }
    for (const QString& path : std::as_const(wanted)) {
        if (!watched.contains(path)) {
            m_watcher.addPath(path);
        }
    }
}

bool FolderBehaviour::press(const WidgetInstance& tile, const QString& command) {
    const QString folder = folderOf(tile.settings.value_or(WidgetSettings()));
    if (command == QLatin1String("choose") ||
        (command == QLatin1String("folder") && !QFileInfo(folder).isDir())) {
        const QString chosen =
            m_services.chooseFolder
                ? m_services.chooseFolder(L("folder.choose", QStringLiteral("Folder to show")),
                                          folder)
                : QString();
        if (!chosen.isEmpty()) {
            m_services.grid.setSetting(tile.id, QStringLiteral("path"), chosen);
        }
        return true;
    }
    QString path;
    if (command == QLatin1String("folder")) {
        path = folder;
    } else if (command.startsWith(QLatin1String("open:"))) {
        const std::optional<FolderView> shown = view(tile.id);
        const qsizetype index = command.mid(5).toInt();
        if (!shown || index < 0 || index >= shown->listing.items.size()) {
            return false;
        }
        path = shown->listing.items.at(index).path;
    } else {
        return false;
    }
    const LaunchResult opened = m_services.workspace.open(QUrl::fromLocalFile(path));
    if (!opened.isSuccess()) {
        qCWarning(lcFolderTile, "could not open %s: %s", qUtf8Printable(path),
                  qUtf8Printable(opened.error()));
    }
    return true;
}

QList<TileBehaviour::MenuItem> FolderBehaviour::menuItems(const WidgetInstance& tile) const {
    Q_UNUSED(tile)
    return {{L("folder.menu.open", QStringLiteral("Open Folder")), QStringLiteral("folder")},
            {L("folder.menu.choose", QStringLiteral("Choose Folder…")), QStringLiteral("choose")}};
}

} // namespace tw
