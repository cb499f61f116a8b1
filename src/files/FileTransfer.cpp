#include "files/FileTransfer.h"

#include "text/L.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QStorageInfo>

#include <cerrno>
#include <cstdio>
#include <unistd.h>

namespace tw {

namespace {

// Compound extensions that read as one: "backup (2).tar.gz", never "backup.tar (2).gz".
const QStringList compoundExtensions = {QStringLiteral(".tar.gz"), QStringLiteral(".tar.bz2"),
                                        QStringLiteral(".tar.xz"), QStringLiteral(".tar.zst")};

QString extensionOf(const QString& name) {
    for (const QString& compound : compoundExtensions) {
        if (name.size() > compound.size() && name.endsWith(compound, Qt::CaseInsensitive)) {
            return name.right(compound.size());
        }
    }
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.mid(dot) : QString();
}

bool taken(const QString& path) {
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

bool removeTree(const QString& path) {
    const QFileInfo info(path);
    if (info.isDir() && !info.isSymLink()) {
        return QDir(path).removeRecursively();
    }
    return QFile::remove(path);
}

QString copyFile(const QString& source, const QString& target) {
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly)) {
        return in.errorString();
    }
    QFile out(target);
    if (!out.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        return out.errorString();
    }
    QByteArray chunk;
    while (!in.atEnd()) {
        chunk = in.read(1 << 20);
        if (in.error() != QFileDevice::NoError) {
            out.remove();
            return in.errorString();
        }
        if (out.write(chunk) != chunk.size()) {
            const QString error = out.errorString();
            out.remove();
            return error;
        }
    }
    // A full disk may only show when the buffered bytes go out.
    if (!out.flush() || out.error() != QFileDevice::NoError) {
        const QString error = out.errorString();
        out.remove();
        return error;
    }
    out.setPermissions(in.permissions());
    out.setFileTime(in.fileTime(QFileDevice::FileModificationTime),
                    QFileDevice::FileModificationTime);
    out.close();
    if (out.error() != QFileDevice::NoError) {
        const QString error = out.errorString();
        out.remove();
        return error;
    }
    return {};
}

} // namespace

QString FileTransfer::uniqueName(const QString& folder, const QString& name) {
    const QDir dir(folder);
    if (!taken(dir.filePath(name))) {
        return name;
    }
    QString candidate;
    for (int counter = 2; taken(dir.filePath(candidate = numbered(name, counter))); ++counter) {
    }
    return candidate;
}

QString FileTransfer::numbered(const QString& name, int counter) {
    if (counter <= 1) {
        return name;
    }
    const QString extension = extensionOf(name);
    QString base = name.left(name.size() - extension.size());
    static const QRegularExpression carried(QStringLiteral("^(.*\\S) \\((\\d{1,6})\\)$"));
    if (const QRegularExpressionMatch match = carried.match(base); match.hasMatch()) {
        base = match.captured(1);
        counter += match.captured(2).toInt() - 1;
    }
    return QStringLiteral("%1 (%2)%3").arg(base).arg(counter).arg(extension);
}

FileTransfer::Result FileTransfer::transfer(const QString& source, const QString& folder, Mode mode,
                                            const FreeSpace& freeSpace) {
    const QFileInfo from(source);
    const QString name = from.fileName();
    if (!from.exists() && !from.isSymLink()) {
        return {.target = {},
                .error =
                    L("files.error.gone", QStringLiteral("“%1” is no longer there.")).arg(name)};
    }
    if (!QFileInfo(folder).isDir()) {
        return {.target = {},
                .error = L("files.error.noFolder", QStringLiteral("The folder “%1” isn't there."))
                             .arg(QDir(folder).dirName())};
    }
    const QString canonicalSource = from.canonicalFilePath();
    const QString canonicalFolder = QFileInfo(folder).canonicalFilePath();
    if (mode == Mode::move &&
        QFileInfo(from.absolutePath()).canonicalFilePath() == canonicalFolder) {
        return {.target = from.absoluteFilePath(), .error = {}};
    }
    if (from.isDir() && (canonicalFolder == canonicalSource ||
                         canonicalFolder.startsWith(canonicalSource + QLatin1Char('/')))) {
        return {.target = {},
                .error = L("files.error.intoItself", QStringLiteral("“%1” can't go inside itself."))
                             .arg(name)};
    }
    const QString target = QDir(folder).filePath(uniqueName(folder, name));
    if (mode == Mode::move && renameOnDisk(source, target)) {
        return {.target = target, .error = {}};
    }
    const qint64 needed = treeSize(source);
    const qint64 available = freeSpace ? freeSpace(folder) : -1;
    if (available >= 0 && needed > available) {
        const QLocale locale;
        return {.target = {},
                .error = L("files.error.space",
                           QStringLiteral("Not enough space for “%1”: it needs %2, %3 free."))
                             .arg(name, locale.formattedDataSize(needed),
                                  locale.formattedDataSize(available))};
    }
    if (const QString error = copyTree(source, target); !error.isEmpty()) {
        return {.target = {},
                .error = L("files.error.copy", QStringLiteral("Couldn't put “%1” there: %2"))
                             .arg(name, error)};
    }
    if (mode == Mode::move && !removeTree(source)) {
        return {.target = target,
                .error = L("files.error.keptSource",
                           QStringLiteral("Copied, but “%1” could not be removed where it was."))
                             .arg(name)};
    }
    return {.target = target, .error = {}};
}

bool FileTransfer::renameOnDisk(const QString& source, const QString& target) {
    const QByteArray from = QFile::encodeName(source);
    const QByteArray to = QFile::encodeName(target);
    const QFileInfo info(source);
    // A hard link refuses a taken name where rename would replace it.
    if (!info.isDir() || info.isSymLink()) {
        if (::link(from.constData(), to.constData()) == 0) {
            if (::unlink(from.constData()) == 0) {
                return true;
            }
            ::unlink(to.constData());
            return false;
        }
        if (errno != EPERM && errno != EOPNOTSUPP) {
            return false;
        }
    }
    // Folders, and disks without hard links: rename refuses a folder that has anything in it,
    // so only a name taken in the last instant could be lost, and it is checked just before.
    return !taken(target) && std::rename(from.constData(), to.constData()) == 0;
}

qint64 FileTransfer::diskFreeSpace(const QString& folder) {
    const QStorageInfo storage(folder);
    return storage.isValid() ? storage.bytesAvailable() : -1;
}

QString FileTransfer::copyTree(const QString& source, const QString& target) {
    const QFileInfo info(source);
    if (info.isSymLink()) {
        return QFile::link(info.symLinkTarget(), target)
                   ? QString()
                   : L("files.error.link", QStringLiteral("the link could not be made"));
    }
    if (!info.isDir()) {
        return copyFile(source, target);
    }
    if (!QDir().mkdir(target)) {
        return L("files.error.mkdir", QStringLiteral("the folder could not be made"));
    }
    const QDir dir(source);
    const QStringList entries =
        dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& entry : entries) {
        const QString error = copyTree(dir.filePath(entry), QDir(target).filePath(entry));
        if (!error.isEmpty()) {
            QDir(target).removeRecursively();
            return error;
        }
    }
    return {};
}

qint64 FileTransfer::treeSize(const QString& path) {
    const QFileInfo info(path);
    if (info.isSymLink()) {
        return 0;
    }
    if (!info.isDir()) {
        return info.size();
    }
    qint64 total = 0;
    QDirIterator it(path, QDir::Files | QDir::Hidden | QDir::System | QDir::NoSymLinks,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        total += it.fileInfo().size();
    }
    return total;
}

} // namespace tw
