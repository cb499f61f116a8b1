// Where the data files live, and how an unreadable one is set aside without losing it.
#pragma once

#include <QDateTime>
#include <QString>

namespace tw {

class AppPaths {
public:
    AppPaths() = delete;

    // The data directory, created with its parents: $TKW_APP_SUPPORT_DIR when set, else the
    // platform's application-data directory (or the temporary directory) plus "Tarnwick".
    // A failure to create it is ignored; the first write then reports it.
    static QString appSupportDir();

    // Moves `path` aside as "<base>.<yyyy-MM-dd-HHmmss>.corrupt" (with "-2", "-3", ... before
    // ".corrupt" when that name is taken) and gives the new path. Gives an empty string when
    // there is nothing to move or the move failed; a failure is logged, the file never deleted.
    static QString quarantineUnreadable(const QString& path);
    static QString quarantineUnreadable(const QString& path, const QDateTime& at);
};

} // namespace tw
