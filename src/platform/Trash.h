// The desktop's trash: what is in it, emptying it, and putting files into it.
#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

namespace tw {

class Trash {
public:
    Trash() = default;
    virtual ~Trash() = default;
    Q_DISABLE_COPY_MOVE(Trash)

    struct Contents {
        int items = 0;
        qint64 bytes = 0;

        bool operator==(const Contents&) const = default;
    };

    struct Result {
        // How many items went (into the trash, or out of it for good).
        int done = 0;
        // Why some or all could not, one sentence for the tile; empty when all went.
        QString error;

        bool ok() const { return error.isEmpty(); }
    };

    // Whether this desktop has a trash this program can reach.
    virtual bool isAvailable() const = 0;
    // The folders whose changes change the contents, for a watcher.
    virtual QStringList watchedFolders() const = 0;
    // Counted afresh on each call; cheap enough for a tile that asks when a watcher says so.
    virtual Contents contents() const = 0;
    // Moves files or folders into the trash, each remembering where it came from.
    virtual Result moveToTrash(const QStringList& paths) = 0;
    // Deletes everything in the trash for good.
    virtual Result empty() = 0;
    // What a file manager opens to show the trash.
    virtual QUrl location() const = 0;
};

} // namespace tw
