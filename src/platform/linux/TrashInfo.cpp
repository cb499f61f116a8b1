#include "platform/linux/TrashInfo.h"

#include <QList>
#include <QUrl>

namespace tw {

namespace {

constexpr qsizetype maximumBytes = 64 * 1024;
const QString dateFormat = QStringLiteral("yyyy-MM-ddTHH:mm:ss");

} // namespace

std::optional<TrashInfo> TrashInfo::fromBytes(const QByteArray& bytes) {
    TrashInfo info;
    bool inGroup = false;
    bool hasPath = false;
    bool hasDate = false;
    const QList<QByteArray> lines = bytes.left(maximumBytes).split('\n');
    for (QByteArray line : lines) {
        line = line.trimmed();
        if (line.startsWith('[')) {
            inGroup = line == "[Trash Info]";
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (!inGroup || equals <= 0) {
            continue;
        }
        const QByteArray key = line.left(equals).trimmed();
        const QByteArray value = line.mid(equals + 1).trimmed();
        if (key == "Path" && !hasPath && !value.isEmpty()) {
            info.path = QUrl::fromPercentEncoding(value);
            hasPath = !info.path.isEmpty();
        } else if (key == "DeletionDate" && !hasDate) {
            info.deletionDate =
                QDateTime::fromString(QString::fromLatin1(value.left(19)), dateFormat);
            hasDate = true;
        }
    }
    if (!hasPath) {
        return std::nullopt;
    }
    return info;
}

QByteArray TrashInfo::toBytes() const {
    QByteArray bytes = "[Trash Info]\nPath=" + QUrl::toPercentEncoding(path, "/") + '\n';
    if (deletionDate.isValid()) {
        bytes += "DeletionDate=" + deletionDate.toString(dateFormat).toLatin1() + '\n';
    }
    return bytes;
}

} // namespace tw
