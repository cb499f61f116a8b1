#include "files/PhotoFolder.h"

#include "files/NaturalOrder.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace tw {

namespace {

void collect(const QString& folder, const QSet<QString>& suffixes, int depthLeft, int limit,
             PhotoFolder& into) {
    const QDir dir(folder);
    const QFileInfoList entries =
        dir.entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Readable);
    for (const QFileInfo& entry : entries) {
        if (into.pictures.size() >= limit) {
            into.truncated = true;
            return;
        }
        if (entry.isDir()) {
            // A link to a folder could lead back up; only real folders are walked.
            if (depthLeft > 0 && !entry.isSymLink()) {
                collect(entry.filePath(), suffixes, depthLeft - 1, limit, into);
            }
        } else if (suffixes.contains(entry.suffix().toLower())) {
            into.pictures.append(entry.absoluteFilePath());
        }
    }
}

} // namespace

PhotoFolder PhotoFolder::scan(const QString& folder, const QStringList& suffixes, int limit) {
    PhotoFolder result;
    if (folder.isEmpty() || !QFileInfo(folder).isDir()) {
        return result;
    }
    result.exists = true;
    collect(folder, QSet<QString>(suffixes.cbegin(), suffixes.cend()), depth, limit, result);
    std::sort(result.pictures.begin(), result.pictures.end(), NaturalOrder::less);
    return result;
}

} // namespace tw
