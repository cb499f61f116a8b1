#include "NotAFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace tw::test {

bool placeNotAFile(const QString& kind, const QString& path) {
    if (kind == QLatin1String("fifo")) {
        return mkfifo(QFile::encodeName(path).constData(), 0600) == 0;
    }
    if (kind == QLatin1String("zero")) {
        return QFile::link(QStringLiteral("/dev/zero"), path);
    }
    if (kind == QLatin1String("dir")) {
        return QDir().mkdir(path);
    }
    if (kind == QLatin1String("dangling")) {
        return QFile::link(
            QFileInfo(path).dir().filePath(QStringLiteral("gone/") + QFileInfo(path).fileName()),
            path);
    }
    return false;
}

} // namespace tw::test
