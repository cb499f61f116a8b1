#include "platform/AppPaths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QStandardPaths>

namespace tw {

namespace {
Q_LOGGING_CATEGORY(lcAppPaths, "AppPaths")

const char* const kDirectoryVariable = "TKW_APP_SUPPORT_DIR";
} // namespace

QString AppPaths::appSupportDir() {
    QString dir = qEnvironmentVariable(kDirectoryVariable);
    if (dir.isEmpty()) {
        QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        if (base.isEmpty()) {
            base = QDir::tempPath();
        }
        dir = base + QStringLiteral("/Tarnwick");
    }
    QDir().mkpath(dir);
    return QDir::cleanPath(dir);
}

QString AppPaths::quarantineUnreadable(const QString& path) {
    return quarantineUnreadable(path, QDateTime::currentDateTime());
}

QString AppPaths::quarantineUnreadable(const QString& path, const QDateTime& at) {
    const QFileInfo info(path);
    if (!info.exists()) {
        return {};
    }
    const QString stem = info.dir().filePath(info.completeBaseName()) + QLatin1Char('.') +
                         at.toString(QStringLiteral("yyyy-MM-dd-HHmmss"));
    // Two unreadable files within one second must both survive, so a taken name gets a counter.
    QString target = stem + QStringLiteral(".corrupt");
    for (int n = 2; QFileInfo::exists(target); ++n) {
        target = stem + QLatin1Char('-') + QString::number(n) + QStringLiteral(".corrupt");
    }
    QFile file(path);
    if (!file.rename(target)) {
        qCWarning(lcAppPaths, "could not set aside %s: %s", qUtf8Printable(path),
                  qUtf8Printable(file.errorString()));
        return {};
    }
    qCWarning(lcAppPaths, "set aside unreadable %s as %s", qUtf8Printable(path),
              qUtf8Printable(target));
    return target;
}

} // namespace tw
