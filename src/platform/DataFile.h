// The one way a data file is read: only a regular file, only up to a size cap, never blocking, so
// that whatever sits in a data file's place (a FIFO, a device, a huge file) cannot stall a start.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <functional>

namespace tw {

class DataFile {
public:
    DataFile() = delete;

    // Far beyond any data file this program writes; a bigger one is not its own.
    static constexpr qint64 maxBytes = 16 * 1024 * 1024;

    enum class Status {
        missing,    // nothing at the path
        regular,    // read whole; the bytes are in `bytes`
        tooLarge,   // a regular file over the cap, not read
        unreadable, // a regular file that could not be read (permissions, I/O)
        notRegular, // a directory, FIFO, device, socket or a link to nothing: never opened
    };

    struct Contents {
        Status status = Status::missing;
        QByteArray bytes;
        // What was wrong, for a log line; empty when missing or read.
        QString problem;
    };

    static Contents read(const QString& path, qint64 limit = maxBytes);

    enum class Outcome {
        missing,   // nothing there: the store starts as on a first start
        loaded,    // `decode` accepted the file
        recovered, // `decode` accepted a tolerant reading; the original is set aside
        setAside,  // unreadable: set aside with `AppPaths::quarantineUnreadable`
        leftAlone, // not a regular file: logged once; the store must not write there
    };

    // How a store loads its JSON data file, once, before its first write: the temporaries of an
    // interrupted write are removed first (`AtomicFile::removeStaleTemporaries`). `decode` takes
    // the bytes and says whether they gave the store its state. When it refuses them, the file is
    // set aside (at time `at`) and a tolerant reading of the same bytes (`repairJson`) is offered
    // to `decode`; if that is accepted, it is written in the file's place, so that the next start
    // finds it.
    static Outcome load(const QString& path, const QDateTime& at,
                        const std::function<bool(const QByteArray&)>& decode);
};

} // namespace tw
