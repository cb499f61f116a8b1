#include "platform/AtomicFile.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tw {

namespace {
Q_LOGGING_CATEGORY(lcAtomicFile, "AtomicFile")

// Temporaries are "<file name>.<pid>-<8 hex digits>.tarnwick-partial": no name a person or
// another program gives a copy of a data file looks like that.
const QString kTemporaryEnding = QStringLiteral(".tarnwick-partial");
constexpr qsizetype kTokenLength = 8;
constexpr int kMaxLinks = 32;
constexpr int kNameAttempts = 16;

QString temporaryPath(const QString& target) {
    const QString token = QString::number(QRandomGenerator::global()->generate(), 16)
                              .rightJustified(kTokenLength, QLatin1Char('0'));
    return target + QLatin1Char('.') + QString::number(::getpid()) + QLatin1Char('-') + token +
           kTemporaryEnding;
}

// The id of the process that wrote the temporary `name` of `fileName`, or 0 when `name` is not
// one of the temporaries of that file.
pid_t writerOf(const QString& name, const QString& fileName) {
    if (!name.startsWith(fileName + QLatin1Char('.')) || !name.endsWith(kTemporaryEnding)) {
        return 0;
    }
    const QStringView middle =
        QStringView(name).sliced(fileName.size() + 1).chopped(kTemporaryEnding.size());
    const qsizetype dash = middle.indexOf(QLatin1Char('-'));
    if (dash < 1 || middle.size() - dash - 1 != kTokenLength) {
        return 0;
    }
    for (const QChar c : middle.sliced(dash + 1)) {
        if (!((c >= QLatin1Char('0') && c <= QLatin1Char('9')) ||
              (c >= QLatin1Char('a') && c <= QLatin1Char('f')))) {
            return 0;
        }
    }
    bool ok = false;
    const int pid = middle.first(dash).toInt(&ok);
    return ok && pid > 0 ? pid : 0;
}

bool isRunning(pid_t pid) {
    return ::kill(pid, 0) == 0 || errno == EPERM;
}

AtomicFile::Result failure(const QString& path, const char* step, const QString& reason) {
    return {QStringLiteral("%1: %2 failed: %3").arg(path, QLatin1String(step), reason)};
}

QString errnoText(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

// The rename itself lives in the directory; syncing it keeps the new name across a power cut.
// Best effort: some file systems refuse to sync a directory, and the data is already safe.
void syncDirectory(const QString& path) {
    const QByteArray dir = QFile::encodeName(QFileInfo(path).absolutePath());
    const int fd = ::open(dir.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

// Removes the temporary file unless it was renamed into place.
struct Temporary {
    QByteArray path;
    int fd = -1;
    bool committed = false;

    ~Temporary() {
        if (fd >= 0) {
            ::close(fd);
        }
        if (!committed && !path.isEmpty()) {
            ::unlink(path.constData());
        }
    }
};

} // namespace

AtomicFile::Result AtomicFile::write(const QString& path, const QByteArray& bytes) {
    // A data file someone keeps elsewhere and links here is written where it really lives.
    QString target = path;
    for (int hops = 0; QFileInfo(target).isSymLink(); ++hops) {
        if (hops == kMaxLinks) {
            return failure(path, "open", QStringLiteral("too many levels of links"));
        }
        target = QFileInfo(target).symLinkTarget();
    }
    struct stat existing {};
    const bool exists = ::stat(QFile::encodeName(target).constData(), &existing) == 0;
    if (exists && !S_ISREG(existing.st_mode)) {
        return failure(path, "open", QStringLiteral("not a regular file, left alone"));
    }
    if (!exists && target != path) {
        return failure(path, "open", QStringLiteral("a link to nothing, left alone"));
    }

    Temporary temporary;
    for (int attempt = 0; temporary.fd < 0 && attempt < kNameAttempts; ++attempt) {
        temporary.path = QFile::encodeName(temporaryPath(target));
        temporary.fd = ::open(temporary.path.constData(),
                              O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOCTTY, 0666);
        if (temporary.fd < 0 && errno != EEXIST) {
            const int error = errno;
            temporary.path.clear();
            return failure(path, "open", errnoText(error));
        }
    }
    if (temporary.fd < 0) {
        temporary.path.clear();
        return failure(path, "open", errnoText(EEXIST));
    }
    if (exists) {
        // Best effort: the new file keeps the old one's permissions.
        ::fchmod(temporary.fd, existing.st_mode & 07777);
    }
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t n = ::write(temporary.fd, bytes.constData() + done,
                                  static_cast<size_t>(bytes.size() - done));
        if (n < 0 && errno != EINTR) {
            return failure(path, "write", errnoText(errno));
        }
        done += std::max<ssize_t>(n, 0);
    }
    while (::fsync(temporary.fd) != 0) {
        if (errno != EINTR) {
            return failure(path, "sync", errnoText(errno));
        }
    }
    // Some file systems report a failed write only at close; the descriptor is gone either way.
    const int closed = ::close(temporary.fd);
    temporary.fd = -1;
    if (closed != 0) {
        return failure(path, "close", errnoText(errno));
    }
    if (::rename(temporary.path.constData(), QFile::encodeName(target).constData()) != 0) {
        return failure(path, "rename", errnoText(errno));
    }
    temporary.committed = true;
    syncDirectory(target);
    return {};
}

int AtomicFile::removeStaleTemporaries(const QString& path) {
    const QFileInfo info(path);
    const QString fileName = info.fileName();
    const QDir dir = info.dir();
    int removed = 0;
    const QStringList names = dir.entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString& name : names) {
        const pid_t writer = writerOf(name, fileName);
        // A write of another process that is still running may be under way.
        if (writer == 0 || (writer != ::getpid() && isRunning(writer))) {
            continue;
        }
        if (QFile::remove(dir.filePath(name))) {
            ++removed;
            qCInfo(lcAtomicFile, "removed %s, left by an interrupted write",
                   qUtf8Printable(dir.filePath(name)));
        } else {
            qCWarning(lcAtomicFile, "could not remove %s", qUtf8Printable(dir.filePath(name)));
        }
    }
    return removed;
}

} // namespace tw
