// Moves and copies files and folders into a folder without ever overwriting: a name that is taken
// becomes "name (2).ext", and a transfer that fails half-way leaves the source as it was.
#pragma once

#include <QString>

#include <functional>

namespace tw {

class FileTransfer {
public:
    FileTransfer() = delete;

    enum class Mode { move, copy };

    struct Result {
        // Where the item now is; empty on failure.
        QString target;
        // Why it failed, one sentence for the tile; empty on success. A move whose copy arrived
        // but whose source could not be removed succeeds with a warning here.
        QString error;

        bool ok() const { return !target.isEmpty(); }
    };

    // Bytes free at a folder; the disk's own answer in the host, a fixed one in tests.
    using FreeSpace = std::function<qint64(const QString& folder)>;

    // The first of "name.ext", "name (2).ext", "name (3).ext"… not taken in `folder`. A counter
    // already in the name is carried on ("a (2).txt" gives "a (3).txt"); ".tar.gz" and the like
    // stay whole, and a name starting with a dot has no extension.
    static QString uniqueName(const QString& folder, const QString& name);
    // `name` with the counter `counter` ("a.txt", 3 gives "a (3).txt"; 1 gives `name`).
    static QString numbered(const QString& name, int counter);

    // Puts `source` (a file or a folder) into `folder` under a free name. A move is a rename
    // where the disk allows it, else a copy that is checked to the last byte and only then
    // followed by removing the source. Nothing is tried when `freeSpace` says the copy cannot
    // fit; a copy that fails all the same is removed again.
    static Result transfer(const QString& source, const QString& folder, Mode mode,
                           const FreeSpace& freeSpace);
    // The disk's free bytes at `folder`.
    static qint64 diskFreeSpace(const QString& folder);

    // Renames on the same disk without ever replacing `target`; false where that would take a
    // copy (another disk) or the name is taken. Unlike QFile::rename it never copies.
    static bool renameOnDisk(const QString& source, const QString& target);
    // Copies a file or a folder's tree to `target`, which must not exist; on failure whatever
    // was made is removed and the error returned (empty on success).
    static QString copyTree(const QString& source, const QString& target);
    // The bytes of a file or of every file under a folder (links are not followed).
    static qint64 treeSize(const QString& path);
};

} // namespace tw
