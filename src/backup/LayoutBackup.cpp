#include "backup/LayoutBackup.h"

#include "backup/PropertyList.h"
#include "platform/AppPaths.h"
#include "platform/AtomicFile.h"
#include "platform/DataFile.h"
#include "platform/Defaults.h"
#include "text/L.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>

namespace tw {

Q_LOGGING_CATEGORY(lcLayoutBackup, "LayoutBackup")

namespace {

// A JSON string literal, escaped as QJsonDocument escapes it.
QByteArray quoted(const QString& text) {
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

QByteArray encodeMap(const QMap<QString, QByteArray>& map) {
    QByteArray out = "{";
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        if (it != map.cbegin()) {
            out += ',';
        }
        out += "\n    " + quoted(it.key()) + ": \"" + it.value().toBase64() + '"';
    }
    out += map.isEmpty() ? "}" : "\n  }";
    return out;
}

QMap<QString, QByteArray> decodeMap(const QJsonValue& value) {
    QMap<QString, QByteArray> map;
    const QJsonObject object = value.toObject();
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        if (!it.value().isString()) {
            continue;
        }
        const auto bytes = QByteArray::fromBase64Encoding(it.value().toString().toLatin1(),
                                                          QByteArray::AbortOnBase64DecodingErrors);
        if (bytes) {
            map.insert(it.key(), *bytes);
        }
    }
    return map;
}

// One plain file name this file system takes: a name that cannot be written is skipped, not
// allowed to fail the whole restore.
bool isSafeName(const QString& name) {
    constexpr qsizetype longestName = 255;
    const bool control = std::any_of(name.cbegin(), name.cend(), [](QChar c) {
        return c.unicode() < 0x20 || c.unicode() == 0x7f;
    });
    return !name.isEmpty() && !control && !name.contains(QLatin1Char('/')) &&
           !name.contains(QLatin1Char('\\')) && !name.contains(QLatin1String("..")) &&
           !name.startsWith(QLatin1Char('.')) && QFile::encodeName(name).size() <= longestName;
}

const QString stagingName = QStringLiteral("restore-staging");
const QString pendingName = QStringLiteral("restore-pending");
const QString finishedName = QStringLiteral("restore-finished");
const QString manifestName = QStringLiteral("manifest.json");
const QString defaultsName = QStringLiteral("defaults.plist");

void applyDefaults(const QVariantMap& stored, Defaults& defaults) {
    for (const QString& key : defaults.keys()) {
        if (LayoutBackup::isPortableDefault(key)) {
            defaults.remove(key);
        }
    }
    for (auto it = stored.cbegin(); it != stored.cend(); ++it) {
        if (LayoutBackup::isPortableDefault(it.key())) {
            defaults.setValue(it.key(), it.value());
        }
    }
    defaults.sync();
}

// rename(2): replaces the target in one step, unlike QFile::rename.
bool replaceWith(const QString& from, const QString& to) {
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

} // namespace

QString LayoutBackup::message(BackupError error) {
    switch (error) {
    case BackupError::unreadable:
        return L("backup.error.unreadable", QStringLiteral("The file could not be read."));
    case BackupError::wrongFormat:
        return L("backup.error.wrongFormat", QStringLiteral("This is not a Tarnwick layout file."));
    case BackupError::newerFormat:
        return L("backup.error.newer",
                 QStringLiteral("This layout was saved by a newer version. Update the app first."));
    }
    return {};
}

const QStringList& LayoutBackup::dataFileNames() {
    static const QStringList names{
        QStringLiteral("grid.json"),
        QStringLiteral("theme.json"),
        QStringLiteral("custom-widgets.json"),
        QStringLiteral("layout-profiles.json"),
        QStringLiteral("smart-layout-rules.json"),
        QStringLiteral("topology.json"),
    };
    return names;
}

bool LayoutBackup::isPortableDefault(const QString& key) {
    if (!key.startsWith(QLatin1String("tarnwick.")) &&
        key != QLatin1String("twk_active_wallpaper")) {
        return false;
    }
    return !key.endsWith(QLatin1String("lastLaunchedVersion")) &&
           !key.contains(QLatin1String("hasSeen")) && !key.contains(QLatin1String(".btdevices.")) &&
           !key.contains(QLatin1String(".glassReset.")) &&
           // Only this machine's: the window's last page and the status item's pending hint.
           key != QLatin1String("tarnwick.settings.page") &&
           !key.contains(QLatin1String("hintPending"));
}

LayoutBackup::Snapshot LayoutBackup::makeSnapshot(const Setup& setup, const QDateTime& now,
                                                  Wallpapers wallpapers) {
    Snapshot snapshot;
    snapshot.appVersion = setup.appVersion;
    snapshot.exportedAt = now.toUTC();
    const QDir dir(setup.directory);
    for (const QString& name : dataFileNames()) {
        const DataFile::Contents contents = DataFile::read(dir.filePath(name));
        if (contents.status == DataFile::Status::regular) {
            snapshot.files.insert(name, contents.bytes);
        } else if (contents.status != DataFile::Status::missing) {
            qCWarning(lcLayoutBackup, "left out of the layout: %s (%s)", qUtf8Printable(name),
                      qUtf8Printable(contents.problem));
        }
    }
    if (wallpapers == Wallpapers::included) {
        const QDir pictures(dir.filePath(wallpapersFolder));
        for (const QString& name : pictures.entryList(QDir::Files | QDir::NoDotAndDotDot)) {
            if (name.startsWith(QLatin1Char('.'))) {
                continue;
            }
            const DataFile::Contents contents =
                DataFile::read(pictures.filePath(name), maxFileBytes / 4);
            if (contents.status == DataFile::Status::regular) {
                snapshot.wallpapers.insert(name, contents.bytes);
            }
        }
    }
    QVariantMap portable;
    for (const QString& key : setup.defaults.keys()) {
        if (isPortableDefault(key)) {
            portable.insert(key, setup.defaults.value(key));
        }
    }
    snapshot.defaults = PropertyList::encode(portable);
    return snapshot;
}

QByteArray LayoutBackup::encode(const Snapshot& snapshot) {
    QByteArray out = "{\n  \"format\": " + QByteArray::number(snapshot.format) + ",\n";
    out += "  \"appVersion\": " + quoted(snapshot.appVersion) + ",\n";
    out += "  \"exportedAt\": " + quoted(snapshot.exportedAt.toUTC().toString(Qt::ISODate)) + ",\n";
    out += "  \"files\": " + encodeMap(snapshot.files) + ",\n";
    out += "  \"wallpapers\": " + encodeMap(snapshot.wallpapers) + ",\n";
    out += "  \"defaults\": \"" + snapshot.defaults.toBase64() + "\"\n}\n";
    return out;
}

LayoutBackup::Decoded LayoutBackup::decode(const QByteArray& bytes) {
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    const QJsonObject root = document.object();
    const QJsonValue format = root.value(QLatin1String("format"));
    if (!document.isObject() || !format.isDouble() ||
        !root.value(QLatin1String("files")).isObject()) {
        return BackupError::wrongFormat;
    }
    if (format.toDouble() >= currentFormat + 1) {
        return BackupError::newerFormat;
    }
    if (format.toDouble() < currentFormat) {
        return BackupError::wrongFormat;
    }
    Snapshot snapshot;
    snapshot.appVersion = root.value(QLatin1String("appVersion")).toString();
    snapshot.exportedAt =
        QDateTime::fromString(root.value(QLatin1String("exportedAt")).toString(), Qt::ISODate)
            .toUTC();
    snapshot.files = decodeMap(root.value(QLatin1String("files")));
    snapshot.wallpapers = decodeMap(root.value(QLatin1String("wallpapers")));
    snapshot.defaults =
        QByteArray::fromBase64Encoding(root.value(QLatin1String("defaults")).toString().toLatin1(),
                                       QByteArray::AbortOnBase64DecodingErrors)
            .decoded;
    return snapshot;
}

LayoutBackup::Decoded LayoutBackup::read(const QString& path) {
    const DataFile::Contents contents = DataFile::read(path, maxFileBytes);
    if (contents.status != DataFile::Status::regular) {
        if (contents.status == DataFile::Status::tooLarge) {
            return BackupError::wrongFormat;
        }
        return BackupError::unreadable;
    }
    return decode(contents.bytes);
}

std::optional<QString> LayoutBackup::apply(const Snapshot& snapshot, const Setup& setup) {
    const QDir dir(setup.directory);
    QDir staging(dir.filePath(stagingName));
    // A restore committed before is finished first; a half-staged one was never committed.
    finishPendingRestore(setup);
    if (!dir.mkpath(stagingName + QStringLiteral("/files")) ||
        !dir.mkpath(stagingName + QStringLiteral("/wallpapers"))) {
        return QStringLiteral("cannot create %1").arg(staging.path());
    }
    const auto stage = [&staging](const QString& name, const QByteArray& bytes) {
        return AtomicFile::write(staging.filePath(name), bytes);
    };
    QJsonObject manifest;
    QJsonArray files;
    for (const QString& name : dataFileNames()) {
        const auto it = snapshot.files.constFind(name);
        if (it == snapshot.files.cend()) {
            continue;
        }
        if (const AtomicFile::Result result = stage(QStringLiteral("files/") + name, *it);
            !result) {
            staging.removeRecursively();
            return result.error;
        }
        files.append(name);
    }
    QJsonArray wallpapers;
    for (auto it = snapshot.wallpapers.cbegin(); it != snapshot.wallpapers.cend(); ++it) {
        if (!isSafeName(it.key())) {
            qCInfo(lcLayoutBackup, "wallpaper skipped: %s", qUtf8Printable(it.key()));
            continue;
        }
        if (const AtomicFile::Result result =
                stage(QStringLiteral("wallpapers/") + it.key(), it.value());
            !result) {
            staging.removeRecursively();
            return result.error;
        }
        wallpapers.append(it.key());
    }
    // Preferences that cannot be read are left as they are rather than all removed.
    const bool hasDefaults = PropertyList::decode(snapshot.defaults).has_value();
    if (hasDefaults) {
        if (const AtomicFile::Result result = stage(defaultsName, snapshot.defaults); !result) {
            staging.removeRecursively();
            return result.error;
        }
    }
    manifest.insert(QStringLiteral("files"), files);
    manifest.insert(QStringLiteral("wallpapers"), wallpapers);
    manifest.insert(QStringLiteral("defaults"), hasDefaults);
    if (const AtomicFile::Result result =
            stage(manifestName, QJsonDocument(manifest).toJson(QJsonDocument::Compact));
        !result) {
        staging.removeRecursively();
        return result.error;
    }
    // The commit: from here on the restore is finished, by this call or at the next start.
    if (!replaceWith(staging.path(), dir.filePath(pendingName))) {
        staging.removeRecursively();
        return QStringLiteral("cannot commit the restore in %1").arg(dir.path());
    }
    if (!finishPendingRestore(setup)) {
        return QStringLiteral("the restore stays pending in %1").arg(dir.path());
    }
    return std::nullopt;
}

bool LayoutBackup::finishPendingRestore(const Setup& setup) {
    const QDir dir(setup.directory);
    QDir(dir.filePath(stagingName)).removeRecursively();
    QDir(dir.filePath(finishedName)).removeRecursively();
    QDir pending(dir.filePath(pendingName));
    if (!pending.exists()) {
        return false;
    }
    const DataFile::Contents contents = DataFile::read(pending.filePath(manifestName));
    const QJsonObject manifest = QJsonDocument::fromJson(contents.bytes).object();
    if (!manifest.value(QLatin1String("files")).isArray()) {
        // Committed, yet unreadable: kept aside for a person to look at.
        qCWarning(lcLayoutBackup, "an unreadable pending restore was set aside: %s",
                  qUtf8Printable(AppPaths::quarantineUnreadable(pending.path())));
        return false;
    }
    const QJsonArray files = manifest.value(QLatin1String("files")).toArray();
    bool complete = true;
    for (const QString& name : dataFileNames()) {
        const QString staged = pending.filePath(QStringLiteral("files/") + name);
        const QString target = dir.filePath(name);
        if (!files.contains(name)) {
            QFile::remove(target);
            complete = complete && !QFileInfo::exists(target);
        } else if (QFileInfo::exists(staged)) {
            // Moved already when the staged copy is gone: a crash in this loop repeats it safely.
            complete = replaceWith(staged, target) && complete;
        }
    }
    dir.mkpath(wallpapersFolder);
    for (const QJsonValue& name : manifest.value(QLatin1String("wallpapers")).toArray()) {
        const QString staged = pending.filePath(QStringLiteral("wallpapers/") + name.toString());
        if (isSafeName(name.toString()) && QFileInfo::exists(staged)) {
            complete = replaceWith(staged, dir.filePath(wallpapersFolder + QLatin1Char('/') +
                                                        name.toString())) &&
                       complete;
        }
    }
    if (manifest.value(QLatin1String("defaults")).toBool()) {
        const std::optional<QVariantMap> stored =
            PropertyList::decode(DataFile::read(pending.filePath(defaultsName)).bytes);
        if (stored) {
            applyDefaults(*stored, setup.defaults);
        }
    }
    if (!complete) {
        qCWarning(lcLayoutBackup, "a restore could not move every file; it is retried next start");
        return false;
    }
    // Out of the way in one step: a removal cut short must not leave half a pending restore.
    if (replaceWith(pending.path(), dir.filePath(finishedName))) {
        QDir(dir.filePath(finishedName)).removeRecursively();
    }
    qCInfo(lcLayoutBackup, "restore completed in %s", qUtf8Printable(dir.path()));
    return true;
}

std::optional<QString> LayoutBackup::backUpCurrentSetup(const Setup& setup, const QDateTime& now) {
    const QDir dir(setup.directory);
    if (!dir.mkpath(backupsFolder)) {
        qCWarning(lcLayoutBackup, "cannot create the backups folder in %s",
                  qUtf8Printable(dir.path()));
        return std::nullopt;
    }
    const QString path =
        dir.filePath(backupsFolder + QStringLiteral("/before-import-") +
                     now.toString(QStringLiteral("yyyy-MM-dd-HHmmss")) + extension);
    const QByteArray bytes = encode(makeSnapshot(setup, now, Wallpapers::included));
    if (const AtomicFile::Result result = AtomicFile::write(path, bytes); !result) {
        qCWarning(lcLayoutBackup, "backup before import failed: %s", qUtf8Printable(result.error));
        return std::nullopt;
    }
    return path;
}

QString LayoutBackup::proposedName(const QDateTime& now) {
    return QStringLiteral("Tarnwick Layout ") + now.toString(QStringLiteral("yyyy-MM-dd HH.mm"));
}

} // namespace tw
