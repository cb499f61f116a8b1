#include "platform/DataFile.h"

#include "platform/AppPaths.h"
#include "platform/AtomicFile.h"
#include "platform/JsonRepair.h"

#include <QFile>
#include <QLoggingCategory>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tw {

namespace {
Q_LOGGING_CATEGORY(lcDataFile, "DataFile")

QString kindOf(mode_t mode) {
    if (S_ISDIR(mode)) {
        return QStringLiteral("a directory");
    }
    if (S_ISFIFO(mode)) {
        return QStringLiteral("a FIFO");
    }
    if (S_ISCHR(mode) || S_ISBLK(mode)) {
        return QStringLiteral("a device");
    }
    if (S_ISSOCK(mode)) {
        return QStringLiteral("a socket");
    }
    return QStringLiteral("not a regular file");
}

DataFile::Contents problem(DataFile::Status status, const QString& text) {
    return {status, {}, text};
}

DataFile::Contents tooLarge(qint64 limit) {
    return problem(DataFile::Status::tooLarge, QStringLiteral("larger than %1 bytes").arg(limit));
}

} // namespace

DataFile::Contents DataFile::read(const QString& path, qint64 limit) {
    const QByteArray name = QFile::encodeName(path);
    // stat never opens: a FIFO or a device is judged by its kind without touching it.
    struct stat status {};
    if (::stat(name.constData(), &status) != 0) {
        const int error = errno;
        struct stat link {};
        if ((error == ENOENT || error == ENOTDIR) && ::lstat(name.constData(), &link) != 0) {
            return {};
        }
        if (error == ENOENT || error == ELOOP) {
            return problem(Status::notRegular, error == ENOENT ? QStringLiteral("a link to nothing")
                                                               : QStringLiteral("a loop of links"));
        }
        return problem(Status::unreadable, QString::fromLocal8Bit(std::strerror(error)));
    }
    if (!S_ISREG(status.st_mode)) {
        return problem(Status::notRegular, kindOf(status.st_mode));
    }
    if (status.st_size > limit) {
        return tooLarge(limit);
    }
    // Non-blocking, and checked again once open, in case something else took the name meanwhile.
    const int fd = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        return problem(Status::unreadable, QString::fromLocal8Bit(std::strerror(errno)));
    }
    Contents contents{Status::regular, {}, {}};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        contents = problem(Status::notRegular, kindOf(status.st_mode));
    } else {
        // One byte past the cap tells a file that grew since the stat from one at the cap.
        contents.bytes.resize(std::min<qint64>(status.st_size, limit) + 1);
        qsizetype done = 0;
        while (done < contents.bytes.size()) {
            const ssize_t n = ::read(fd, contents.bytes.data() + done,
                                     static_cast<size_t>(contents.bytes.size() - done));
            if (n < 0 && errno == EINTR) {
                continue;
            }
            if (n < 0) {
                contents =
                    problem(Status::unreadable, QString::fromLocal8Bit(std::strerror(errno)));
                break;
            }
            if (n == 0) {
                contents.bytes.truncate(done);
                break;
            }
            done += n;
            if (done == contents.bytes.size() && done <= limit) {
                contents.bytes.resize(std::min<qint64>(done * 2, limit + 1));
            }
        }
        if (contents.status == Status::regular && contents.bytes.size() > limit) {
            contents = tooLarge(limit);
        }
    }
    ::close(fd);
    return contents;
}

DataFile::Outcome DataFile::load(const QString& path, const QDateTime& at,
                                 const std::function<bool(const QByteArray&)>& decode) {
    // A crash in the middle of a save leaves its temporary file behind.
    AtomicFile::removeStaleTemporaries(path);
    const Contents contents = read(path);
    switch (contents.status) {
    case Status::missing:
        return Outcome::missing;
    case Status::notRegular:
        qCWarning(lcDataFile, "%s is %s, not a data file: left alone, and nothing is saved there",
                  qUtf8Printable(path), qUtf8Printable(contents.problem));
        return Outcome::leftAlone;
    case Status::tooLarge:
    case Status::unreadable:
        qCWarning(lcDataFile, "cannot read %s: %s", qUtf8Printable(path),
                  qUtf8Printable(contents.problem));
        AppPaths::quarantineUnreadable(path, at);
        return Outcome::setAside;
    case Status::regular:
        break;
    }
    if (decode(contents.bytes)) {
        return Outcome::loaded;
    }
    const QString original = AppPaths::quarantineUnreadable(path, at);
    const JsonRepair repair = repairJson(contents.bytes);
    if (!repair.changed() || !decode(repair.bytes)) {
        return Outcome::setAside;
    }
    qCWarning(lcDataFile, "recovered %s from a tolerant reading (%s); the original is kept as %s",
              qUtf8Printable(path), qUtf8Printable(repair.summary()), qUtf8Printable(original));
    // Only in the place of a file that was moved aside: the original is never overwritten.
    if (!original.isEmpty()) {
        if (const AtomicFile::Result written = AtomicFile::write(path, repair.bytes); !written) {
            qCWarning(lcDataFile, "could not write the recovered file: %s",
                      qUtf8Printable(written.error));
        }
    }
    return Outcome::recovered;
}

} // namespace tw
