// The one way a data file is written: all of the new bytes or, on any failure, the old file as
// it was.
#pragma once

#include <QByteArray>
#include <QString>

namespace tw {

class AtomicFile {
public:
    AtomicFile() = delete;

    struct Result {
        // Empty on success; otherwise what failed, ready for a log line.
        QString error;

        bool ok() const { return error.isEmpty(); }
        explicit operator bool() const { return ok(); }
    };

    // Writes `bytes` to a temporary file beside `path`, checks that every byte reached the disk
    // (write, sync and close), and only then renames it over `path`. On failure `path` is
    // untouched and the temporary file removed. A link is followed to the file it names; anything
    // but a regular file in its place (a directory, a FIFO, a link to nothing) is never replaced.
    static Result write(const QString& path, const QByteArray& bytes);

    // Deletes the temporary files that a write of `path` cut short by a crash left beside it and
    // nothing else; gives how many went. Only names this class gives its temporaries count,
    // "<file name>.<process id>-<8 hex digits>.tarnwick-partial", and of those only the ones
    // whose writing process is gone. Call it before the first write of `path`.
    static int removeStaleTemporaries(const QString& path);
};

} // namespace tw
