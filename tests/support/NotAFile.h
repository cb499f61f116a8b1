// Puts something other than a regular file where a data file belongs, as a hostile or broken
// data directory can: a FIFO, a link to /dev/zero, a directory, or a link to nothing (to
// `gone/<name>` beside it).
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace tw::test {

// `kind` is "fifo", "zero", "dir" or "dangling"; true when it was put there.
inline bool placeNotAFile(const QString& kind, const QString& path) {
    const QFileInfo info(path);
    return kind == QLatin1String("fifo")   ? mkfifo(QFile::encodeName(path).constData(), 0600) == 0
           : kind == QLatin1String("zero") ? QFile::link(QStringLiteral("/dev/zero"), path)
           : kind == QLatin1String("dir")  ? QDir().mkdir(path)
           : kind == QLatin1String("dangling")
               ? QFile::link(info.dir().filePath(QStringLiteral("gone/") + info.fileName()), path)
               : false;
}

} // namespace tw::test
