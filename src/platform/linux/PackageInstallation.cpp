#include "platform/linux/PackageInstallation.h"

#include <QFile>
#include <QFileInfo>

namespace tw {

namespace {

// A list of a few hundred paths; a far larger one is not ours.
constexpr qint64 maxListBytes = 1024 * 1024;

bool listNames(const QString& listPath, const QString& path) {
    QFile list(listPath);
    if (list.size() > maxListBytes || !list.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray wanted = QFile::encodeName(path);
    const QByteArray lines = list.read(maxListBytes);
    for (const QByteArray& line : lines.split('\n')) {
        if (line == wanted) {
            return true;
        }
    }
    return false;
}

} // namespace

Installation PackageInstallation::detect(const QString& executable, const QString& dpkgInfo,
                                         const QString& flatpakId) {
    if (!flatpakId.isEmpty()) {
        return {.kind = Installation::Kind::sandboxed,
                .source = QStringLiteral("Flatpak"),
                .upgradeCommand = QStringLiteral("flatpak update %1").arg(flatpakId)};
    }
    const QString listPath = dpkgInfo + QLatin1Char('/') + packageName + QStringLiteral(".list");
    const QFileInfo file(executable);
    // The list names the path as installed; a link (/usr/bin to /bin on merged systems) may
    // stand between it and the running file.
    for (const QString& path : {file.absoluteFilePath(), file.canonicalFilePath()}) {
        if (!path.isEmpty() && listNames(listPath, path)) {
            return {.kind = Installation::Kind::systemPackage,
                    .source = QStringLiteral("Debian package"),
                    .upgradeCommand = QStringLiteral("sudo apt update && sudo apt install "
                                                     "--only-upgrade %1")
                                          .arg(packageName)};
        }
    }
    return {};
}

} // namespace tw
