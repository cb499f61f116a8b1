// Starting this program again in a new process once the running one has ended.
#pragma once

#include <QString>
#include <QStringList>

namespace tw {

class Relauncher {
public:
    Relauncher() = default;
    virtual ~Relauncher() = default;
    Q_DISABLE_COPY_MOVE(Relauncher)

    // Starts, detached, something that waits while the process `pid` lives and then starts
    // `program` with `arguments` as they are. False when it could not be started.
    virtual bool startAfterExit(qint64 pid, const QString& program,
                                const QStringList& arguments) = 0;
};

} // namespace tw
