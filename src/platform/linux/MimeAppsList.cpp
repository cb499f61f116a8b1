#include "platform/linux/MimeAppsList.h"

#include <QFile>

#include <sys/stat.h>

namespace tw {

MimeAppsList MimeAppsList::parse(const QByteArray& text) {
    MimeAppsList list;
    QHash<QString, QStringList>* group = nullptr;
    for (const QByteArray& rawLine : text.split('\n')) {
        const QString line = QString::fromUtf8(rawLine).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) {
            continue;
        }
        if (line.startsWith(QLatin1Char('['))) {
            if (line == QLatin1String("[Default Applications]")) {
                group = &list.defaults;
            } else if (line == QLatin1String("[Added Associations]")) {
                group = &list.added;
            } else if (line == QLatin1String("[Removed Associations]")) {
                group = &list.removed;
            } else {
                group = nullptr;
            }
            continue;
        }
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (group == nullptr || equals <= 0) {
            continue;
        }
        QStringList ids;
        for (const QString& id : line.mid(equals + 1).split(QLatin1Char(';'))) {
            if (!id.trimmed().isEmpty()) {
                ids.append(id.trimmed());
            }
        }
        (*group)[line.left(equals).trimmed()].append(ids);
    }
    return list;
}

MimeAppsList MimeAppsList::read(const QString& filePath) {
    struct stat status {};
    if (::stat(QFile::encodeName(filePath).constData(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > maximumSize) {
        return {};
    }
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return parse(file.read(maximumSize));
}

} // namespace tw
