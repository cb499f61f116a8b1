#include "platform/AtomicFile.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSaveFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tw {

namespace {
Q_LOGGING_CATEGORY(lcAtomicFile, "AtomicFile")

// QSaveFile names its temporary file after the target with "." and six random ASCII letters.
constexpr qsizetype kTemporarySuffixLength = 6;

// A name of one of the temporaries of `fileName`. A word such as "backup" or "BACKUP" (a copy
// someone made by hand) is never one: a random name mixes both cases in all but 1 of 32 cases,
// and a temporary of that rare kind only stays behind as clutter.
bool isTemporaryName(const QString& name, const QString& fileName) {
    if (name.size() != fileName.size() + 1 + kTemporarySuffixLength || !name.startsWith(fileName) ||
        name.at(fileName.size()) != QLatin1Char('.')) {
        return false;
    }
    bool upper = false;
    bool lower = false;
    for (const QChar c : QStringView(name).right(kTemporarySuffixLength)) {
        const bool isUpper = c >= QLatin1Char('A') && c <= QLatin1Char('Z');
        const bool isLower = c >= QLatin1Char('a') && c <= QLatin1Char('z');
        if (!isUpper && !isLower) {
            return false;
        }
        upper = upper || isUpper;
        lower = lower || isLower;
    }
    return upper && lower;
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

} // namespace

AtomicFile::Result AtomicFile::write(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return failure(path, "open", file.errorString());
    }
    // QSaveFile buffers, and an error of the final flush inside commit() goes unnoticed: on a
    // full disk it would rename an empty file over the good one. So every step is checked here,
    // before commit() is allowed to rename; the destructor removes the temporary file otherwise.
    if (file.write(bytes) != bytes.size()) {
        return failure(path, "write", file.errorString());
    }
    if (!file.flush() || file.error() != QFileDevice::NoError) {
        return failure(path, "flush", file.errorString());
    }
    while (::fsync(file.handle()) != 0) {
        if (errno != EINTR) {
            return failure(path, "sync", errnoText(errno));
        }
    }
    if (!file.commit()) {
        return failure(path, "commit", file.errorString());
    }
    syncDirectory(path);
    return {};
}

int AtomicFile::removeStaleTemporaries(const QString& path) {
    const QFileInfo info(path);
    const QString fileName = info.fileName();
    const QDir dir = info.dir();
    int removed = 0;
    const QStringList names = dir.entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString& name : names) {
        if (!isTemporaryName(name, fileName)) {
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
