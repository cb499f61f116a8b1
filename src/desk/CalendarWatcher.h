// The folders of the calendars and lists in use, watched for what other programs write there, so
// that a sync or another calendar program reaches the tiles without polling. A burst of changes
// in one folder (a sync writing many items) is told once, after it settles.
#pragma once

#include "platform/ScheduledTask.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>

#include <chrono>
#include <map>

namespace tw {

class Scheduler;

class CalendarWatcher final : public QObject {
    Q_OBJECT
public:
    static constexpr std::chrono::milliseconds settle{400};

    explicit CalendarWatcher(Scheduler& scheduler, QObject* parent = nullptr);

    // Watches exactly these folders from now on; those that do not exist are left out, and
    // taken up by a later call once they do.
    void setFolders(const QStringList& folders);
    QStringList folders() const { return m_watcher.directories(); }

Q_SIGNALS:
    void folderChanged(const QString& folder);

private:
    void changed(const QString& folder);

    Scheduler& m_scheduler;
    QFileSystemWatcher m_watcher;
    std::map<QString, ScheduledTask> m_settling;
};

} // namespace tw
