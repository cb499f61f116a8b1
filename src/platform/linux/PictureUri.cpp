#include "platform/linux/PictureUri.h"

#include <QByteArray>
#include <QFile>

namespace tw {

QString PictureUri::localFile(const QString& uriOrPath) {
    const QString text = uriOrPath.trimmed();
    if (text.startsWith(QLatin1Char('/'))) {
        return text.contains(QChar(0)) ? QString() : text;
    }
    const QLatin1String scheme("file://");
    if (!text.startsWith(scheme, Qt::CaseInsensitive)) {
        return {};
    }
    QString rest = text.mid(scheme.size());
    const QLatin1String localhost("localhost");
    if (rest.startsWith(localhost, Qt::CaseInsensitive)) {
        rest = rest.mid(localhost.size());
    }
    if (!rest.startsWith(QLatin1Char('/'))) {
        return {};
    }
    // File names are bytes: decode the escapes to bytes first, then as the system names files.
    const QByteArray bytes = QByteArray::fromPercentEncoding(rest.toUtf8());
    if (bytes.contains('\0')) {
        return {};
    }
    return QFile::decodeName(bytes);
}

} // namespace tw
