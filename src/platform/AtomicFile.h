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
    // (flush and sync), and only then renames it over `path`. On failure `path` is untouched and
    // the temporary file removed.
    static Result write(const QString& path, const QByteArray& bytes);

    // Deletes the temporary files that a write of `path` cut short by a crash left beside it,
    // "<file name>." and six letters, and nothing else; gives how many went. Call it once, before
    // the first write, while no write of `path` can be under way.
    static int removeStaleTemporaries(const QString& path);
};

} // namespace tw
