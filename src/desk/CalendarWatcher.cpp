#include "desk/CalendarWatcher.h"

#include "platform/Scheduler.h"

#include <QFileInfo>
#include <QSet>

namespace tw {

CalendarWatcher::CalendarWatcher(Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler) {
    // Items are written whole and renamed into place, as vdir asks of every writer: the folder's
    // own change says it, so no item file needs a watch of its own.
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &CalendarWatcher::changed);
}

void CalendarWatcher::setFolders(const QStringList& folders) {
    const QSet<QString> wanted(folders.cbegin(), folders.cend());
    const QStringList watched = m_watcher.directories();
    QStringList gone;
    for (const QString& folder : watched) {
        if (!wanted.contains(folder)) {
            gone << folder;
            m_settling.erase(folder);
        }
    }
    if (!gone.isEmpty()) {
        m_watcher.removePaths(gone);
    }
    QStringList added;
    for (const QString& folder : wanted) {
        if (!watched.contains(folder) && QFileInfo(folder).isDir()) {
            added << folder;
        }
    }
    if (!added.isEmpty()) {
        m_watcher.addPaths(added);
    }
}

void CalendarWatcher::changed(const QString& folder) {
    m_settling[folder] = m_scheduler.singleShot(settle, settle / 4, this,
                                                [this, folder] { Q_EMIT folderChanged(folder); });
}

} // namespace tw
