#include "files/DroppedPaths.h"

#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

namespace tw {

QStringList DroppedPaths::of(const QMimeData& data) {
    QStringList paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl& url : urls) {
        if (!url.isLocalFile()) {
            continue;
        }
        const QString path = url.toLocalFile();
        const QFileInfo info(path);
        if ((info.exists() || info.isSymLink()) && !paths.contains(path)) {
            paths.append(path);
        }
    }
    return paths;
}

} // namespace tw
