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
#include <QStorageInfo>
#include <QUrl>

#include <sys/stat.h>
#include <unistd.h>

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

// A folder of this user's own, not a link to one elsewhere.
bool ownFolder(const QString& path) {
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::getuid();
}

// The trash folder a disk beginning at `top` has, or may have, for this user, best first:
// ".Trash/$uid" when ".Trash" is a real folder with the sticky bit (one shared by every user),
// then ".Trash-$uid".
QStringList topTrashes(const QString& top) {
    const QString uid = QString::number(::getuid());
    const QString shared = QDir(top).filePath(QStringLiteral(".Trash"));
    struct stat status = {};
    QStringList candidates;
    if (::lstat(QFile::encodeName(shared).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
        (status.st_mode & S_ISVTX) != 0) {
        candidates.append(shared + QLatin1Char('/') + uid);
    }
    candidates.append(QDir(top).filePath(QStringLiteral(".Trash-") + uid));
    return candidates;
}

// The mount point among `mounts` that holds the folder `path` (canonical): the longest.
QString topOf(const QString& path, const QStringList& mounts) {
    QString best;
    for (const QString& mount : mounts) {
        const QString top = mount.endsWith(QLatin1Char('/')) ? mount : mount + QLatin1Char('/');
        if (QString(path + QLatin1Char('/')).startsWith(top) && mount.size() > best.size()) {
            best = mount;
        }
    }
    return best;
}

// The folder `path` lies in, resolved, or the nearest that exists above it.
QString existingFolderOf(QString path) {
    while (!path.isEmpty() && !QFileInfo::exists(path)) {
        const QString up = QFileInfo(path).absolutePath();
        if (up == path) {
            break;
        }
        path = up;
    }
    return QFileInfo(path).canonicalFilePath();
}

Trash::Contents contentsOf(const QString& trash) {
    const QDir root(trash);
    const QDir files(root.filePath(filesName));
    const QHash<QString, CachedSize> cached =
        readDirectorySizes(root.filePath(QStringLiteral("directorysizes")));
    Trash::Contents contents;
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

// Deletes what `trash` holds; the number gone, and of those that would not go in `failed`.
int emptyOne(const QString& trash, int& failed) {
    const QDir files(QDir(trash).filePath(filesName));
    const QDir infos(QDir(trash).filePath(infoName));
    int done = 0;
    const QStringList items =
        files.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& item : items) {
        if (removeItem(files.filePath(item))) {
            ++done;
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
    QFile::remove(QDir(trash).filePath(QStringLiteral("directorysizes")));
    return done;
}

// Makes the folders of a trash, private to the user; false when it cannot be made.
bool makeTrash(const QString& trash) {
    const QDir root(trash);
    bool made = true;
    for (const QString& name : {filesName, infoName}) {
        if (!root.exists(name)) {
            made = root.mkpath(name) && made;
            QFile::setPermissions(trash, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                             QFileDevice::ExeOwner);
        }
    }
    return made;
}

} // namespace

XdgTrash::XdgTrash(QString root, const Clock& clock, MountPoints mounts)
    : m_root(std::move(root))
    , m_clock(clock)
    , m_mounts(std::move(mounts)) {}

QStringList XdgTrash::mountedDisks() {
    QStringList mounts;
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (volume.isValid() && volume.isReady()) {
            mounts.append(volume.rootPath());
        }
    }
    return mounts;
}

QStringList XdgTrash::trashes() const {
    QStringList all{m_root};
    const QStringList mounts = m_mounts ? m_mounts() : QStringList();
    for (const QString& mount : mounts) {
        for (const QString& trash : topTrashes(mount)) {
            if (ownFolder(trash) && !all.contains(trash)) {
                all.append(trash);
            }
        }
    }
    return all;
}

QStringList XdgTrash::watchedFolders() const {
    // The home trash may not exist yet; the format lets any program make it.
    makeTrash(m_root);
    QStringList folders;
    for (const QString& trash : trashes()) {
        folders << QDir(trash).filePath(filesName) << QDir(trash).filePath(infoName);
    }
    return folders;
}

Trash::Contents XdgTrash::contents() const {
    Contents all;
    for (const QString& trash : trashes()) {
        const Contents one = contentsOf(trash);
        all.items += one.items;
        all.bytes += one.bytes;
    }
    return all;
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
    const QString canonical = source.canonicalFilePath();
    for (const QString& trash : trashes()) {
        const QString root = QFileInfo(trash).canonicalFilePath();
        if (!root.isEmpty() &&
            (canonical == root || canonical.startsWith(root + QLatin1Char('/')) ||
             root.startsWith(canonical + QLatin1Char('/')))) {
            return L("trash.error.itself", QStringLiteral("“%1” holds the trash itself."))
                .arg(name);
        }
    }
    // On another disk than the home trash: that disk's own trash, with the path from its top.
    const QStringList mounts = m_mounts ? m_mounts() : QStringList();
    const QString top = topOf(QFileInfo(source.absolutePath()).canonicalFilePath(), mounts);
    if (!top.isEmpty() && top != topOf(existingFolderOf(m_root), mounts)) {
        for (const QString& trash : topTrashes(top)) {
            if ((ownFolder(trash) ||
                 QDir().mkdir(trash, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                         QFileDevice::ExeOwner)) &&
                makeTrash(trash)) {
                const QString recorded = QDir(top).relativeFilePath(source.absoluteFilePath());
                if (trashInto(trash, path, recorded, false).isEmpty()) {
                    return {};
                }
                break;
            }
        }
    }
    return trashInto(m_root, path, source.absoluteFilePath(), true);
}

QString XdgTrash::trashInto(const QString& trash, const QString& path, const QString& recorded,
                            bool copy) {
    const QString name = QFileInfo(path).fileName();
    makeTrash(trash);
    const QDir files(QDir(trash).filePath(filesName));
    const QDir infos(QDir(trash).filePath(infoName));
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
    const QByteArray bytes = TrashInfo{.path = recorded, .deletionDate = m_clock.now()}.toBytes();
    if (trashed.isEmpty() || info.write(bytes) != bytes.size() || !info.flush()) {
        QString error = info.errorString();
        info.close();
        info.remove();
        return error;
    }
    info.close();
    const QString target = files.filePath(trashed);
    if (FileTransfer::renameOnDisk(path, target)) {
        return {};
    }
    if (!copy) {
        info.remove();
        return L("trash.error.move", QStringLiteral("“%1” could not be moved.")).arg(name);
    }
    // Another disk without a trash of its own: copy into the home trash, then remove the
    // original; never both lost.
    if (QString error = FileTransfer::copyTree(path, target); !error.isEmpty()) {
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
    int failed = 0;
    for (const QString& trash : trashes()) {
        result.done += emptyOne(trash, failed);
    }
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
