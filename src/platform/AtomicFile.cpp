#include "platform/AtomicFile.h"

#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tw {

namespace {

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

} // namespace tw
