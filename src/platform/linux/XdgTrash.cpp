#include "platform/linux/XdgTrash.h"

#include "files/FileTransfer.h"
#include "platform/Clock.h"
#include "platform/linux/TrashInfo.h"
#include "text/L.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLoggingCategory>
#include <QUrl>

namespace tw {

Q_LOGGING_CATEGORY(lcTrash, "com.tarnwick.app.Trash")

namespace {

const QString filesName = QStringLiteral("files");
const QString infoName = QStringLiteral("info");
const QString infoSuffix = QStringLiteral(".trashinfo");

struct CachedSize {
    qint64 bytes = 0;
    qint64 modified = 0;
};

// "directorysizes": one line per trashed folder, "<bytes> <mtime of its .trashinfo> <name>",
// the name percent-encoded.
QHash<QString, CachedSize> readDirectorySizes(const QString& path) {
    QHash<QString, CachedSize> sizes;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return sizes;
    }
    const QList<QByteArray> lines = file.read(4 << 20).split('\n');
    for (const QByteArray& line : lines) {
        const QList<QByteArray> fields = line.split(' ');
        bool sizeOk = false;
        bool timeOk = false;
        if (fields.size() != 3) {
            continue;
        }
        const CachedSize size{.bytes = fields[0].toLongLong(&sizeOk),
                              .modified = fields[1].toLongLong(&timeOk)};
        if (sizeOk && timeOk && size.bytes >= 0) {
            sizes.insert(QUrl::fromPercentEncoding(fields[2]), size);
        }
    }
    return sizes;
}

bool removeItem(const QString& path) {
    const QFileInfo info(path);
    if (info.isDir() && !info.isSymLink()) {
        return QDir(path).removeRecursively();
    }
    return QFile::remove(path);
}

bool exists(const QString& path) {
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

} // namespace

XdgTrash::XdgTrash(QString root, const Clock& clock)
    : m_root(std::move(root))
    , m_clock(clock) {}

QStringList XdgTrash::watchedFolders() const {
    const QDir root(m_root);
    // The trash may not exist yet; the format lets any program make it, private to the user.
    for (const QString& name : {filesName, infoName}) {
        if (!root.exists(name) && root.mkpath(name)) {
            QFile::setPermissions(m_root, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                              QFileDevice::ExeOwner);
        }
    }
    return {root.filePath(filesName), root.filePath(infoName)};
}

Trash::Contents XdgTrash::contents() const {
    const QDir root(m_root);
    const QDir files(root.filePath(filesName));
    const QHash<QString, CachedSize> cached =
        readDirectorySizes(root.filePath(QStringLiteral("directorysizes")));
    Contents contents;
    const QFileInfoList items =
        files.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo& item : items) {
        ++contents.items;
        if (!item.isDir() || item.isSymLink()) {
            contents.bytes += item.isSymLink() ? 0 : item.size();
            continue;
        }
        const QFileInfo info(
            root.filePath(infoName + QLatin1Char('/') + item.fileName() + infoSuffix));
        const auto hit = cached.constFind(item.fileName());
        if (hit != cached.constEnd() && info.exists() &&
            hit->modified == info.lastModified().toSecsSinceEpoch()) {
            contents.bytes += hit->bytes;
        } else {
            contents.bytes += FileTransfer::treeSize(item.filePath());
        }
    }
    return contents;
}

Trash::Result XdgTrash::moveToTrash(const QStringList& paths) {
    Result result;
    for (const QString& path : paths) {
        if (const QString error = trashOne(path); error.isEmpty()) {
            ++result.done;
        } else {
            qCWarning(lcTrash, "could not trash %s: %s", qUtf8Printable(path),
                      qUtf8Printable(error));
            result.error = error;
        }
    }
    return result;
}

QString XdgTrash::trashOne(const QString& path) {
    const QFileInfo source(path);
    const QString name = source.fileName();
    if (!exists(path)) {
        return L("files.error.gone", QStringLiteral("“%1” is no longer there.")).arg(name);
    }
    const QString root = QFileInfo(m_root).canonicalFilePath();
    const QString canonical = source.canonicalFilePath();
    if (!root.isEmpty() && (canonical == root || canonical.startsWith(root + QLatin1Char('/')) ||
                            root.startsWith(canonical + QLatin1Char('/')))) {
        return L("trash.error.itself", QStringLiteral("“%1” holds the trash itself.")).arg(name);
    }
    watchedFolders();
    const QDir files(QDir(m_root).filePath(filesName));
    const QDir infos(QDir(m_root).filePath(infoName));
    // The info file is made first and exclusively: it is what reserves the name.
    QString trashed;
    QFile info;
    for (int counter = 1; counter < 100000; ++counter) {
        const QString candidate = FileTransfer::numbered(name, counter);
        if (exists(files.filePath(candidate))) {
            continue;
        }
        info.setFileName(infos.filePath(candidate + infoSuffix));
        if (info.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            trashed = candidate;
            break;
        }
        if (!info.exists()) {
            return info.errorString();
        }
    }
    const QByteArray bytes =
        TrashInfo{.path = source.absoluteFilePath(), .deletionDate = m_clock.now()}.toBytes();
    if (trashed.isEmpty() || info.write(bytes) != bytes.size() || !info.flush()) {
        const QString error = info.errorString();
        info.close();
        info.remove();
        return error;
    }
    info.close();
    const QString target = files.filePath(trashed);
    if (FileTransfer::renameOnDisk(path, target)) {
        return {};
    }
    // Another disk: copy into the home trash, then remove the original; never both lost.
    if (const QString error = FileTransfer::copyTree(path, target); !error.isEmpty()) {
        info.remove();
        return error;
    }
    if (!removeItem(path)) {
        removeItem(target);
        info.remove();
        return L("trash.error.keep", QStringLiteral("“%1” could not be removed where it was."))
            .arg(name);
    }
    return {};
}

Trash::Result XdgTrash::empty() {
    Result result;
    const QDir files(QDir(m_root).filePath(filesName));
    const QDir infos(QDir(m_root).filePath(infoName));
    int failed = 0;
    const QStringList items =
        files.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& item : items) {
        if (removeItem(files.filePath(item))) {
            ++result.done;
            QFile::remove(infos.filePath(item + infoSuffix));
        } else {
            ++failed;
        }
    }
    // Info files whose item is gone describe nothing.
    const QStringList infoFiles = infos.entryList({QLatin1Char('*') + infoSuffix}, QDir::Files);
    for (const QString& infoFile : infoFiles) {
        if (!exists(files.filePath(infoFile.chopped(infoSuffix.size())))) {
            QFile::remove(infos.filePath(infoFile));
        }
    }
    QFile::remove(QDir(m_root).filePath(QStringLiteral("directorysizes")));
    if (failed > 0) {
        result.error =
            failed == 1 ? L("trash.error.emptyOne", QStringLiteral("1 item could not be deleted."))
                        : L("trash.error.empty", QStringLiteral("%1 items could not be deleted."))
                              .arg(failed);
        qCWarning(lcTrash, "%d items could not be deleted", failed);
    }
    return result;
}

QUrl XdgTrash::location() const {
    return QUrl::fromLocalFile(QDir(m_root).filePath(filesName));
}

} // namespace tw
