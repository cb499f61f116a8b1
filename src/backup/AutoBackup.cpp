#include "backup/AutoBackup.h"

#include "model/GridLayout.h"
#include "platform/AtomicFile.h"
#include "platform/Defaults.h"
#include "text/L.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonDocument>
#include <QLoggingCategory>

#include <algorithm>

namespace tw {

Q_LOGGING_CATEGORY(lcAutoBackup, "AutoBackup")

AutoBackup::AutoBackup(LayoutBackup::Setup setup)
    : m_setup(std::move(setup)) {}

bool AutoBackup::isEnabled() const {
    return m_setup.defaults.value(enabledKey, true).toBool();
}

QString AutoBackup::folder() const {
    return QDir(m_setup.directory).filePath(LayoutBackup::backupsFolder);
}

QStringList AutoBackup::autoNames(const QString& folder) {
    QStringList names = QDir(folder).entryList(
        {prefix + QLatin1Char('*') + LayoutBackup::extension}, QDir::Files, QDir::Name);
    return names;
}

void AutoBackup::prune(const QString& folder) {
    const QStringList names = autoNames(folder);
    const QDir dir(folder);
    for (qsizetype i = 0; i + kept < names.size(); ++i) {
        if (!QFile::remove(dir.filePath(names.at(i)))) {
            qCWarning(lcAutoBackup, "cannot remove old backup %s", qUtf8Printable(names.at(i)));
        }
    }
}

QString AutoBackup::fingerprint(const LayoutBackup::Snapshot& snapshot) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const QString gridName = QStringLiteral("grid.json");
    if (const auto grid = snapshot.files.constFind(gridName); grid != snapshot.files.cend()) {
        if (std::optional<GridLayout> layout = GridLayout::fromJsonText(*grid)) {
            layout->savedAt.reset();
            // QJsonObject keeps its keys sorted.
            hash.addData(QJsonDocument(layout->toJson()).toJson(QJsonDocument::Compact));
        } else {
            hash.addData(*grid);
        }
    }
    for (auto it = snapshot.files.cbegin(); it != snapshot.files.cend(); ++it) {
        if (it.key() != gridName) {
            hash.addData(it.key().toUtf8());
            hash.addData(it.value());
        }
    }
    hash.addData(snapshot.defaults);
    return QString::fromLatin1(hash.result().toHex());
}

bool AutoBackup::runIfDue(const QDateTime& now, Force force) {
    const QStringList names = autoNames(folder());
    std::optional<LayoutBackup::Snapshot> newest;
    if (!names.isEmpty()) {
        const LayoutBackup::Decoded last =
            LayoutBackup::read(QDir(folder()).filePath(names.last()));
        if (const auto* snapshot = std::get_if<LayoutBackup::Snapshot>(&last)) {
            newest = *snapshot;
        }
    }
    if (force == Force::no) {
        if (!isEnabled()) {
            return false;
        }
        if (newest && newest->exportedAt.isValid() &&
            newest->exportedAt.secsTo(now) < interval.count() && newest->exportedAt <= now) {
            return false;
        }
    }
    const LayoutBackup::Snapshot snapshot =
        LayoutBackup::makeSnapshot(m_setup, now, LayoutBackup::Wallpapers::excluded);
    if (force == Force::no && newest && fingerprint(*newest) == fingerprint(snapshot)) {
        return false;
    }
    if (!QDir(m_setup.directory).mkpath(LayoutBackup::backupsFolder)) {
        qCWarning(lcAutoBackup, "auto backup failed: cannot create %s", qUtf8Printable(folder()));
        return false;
    }
    const QString name =
        prefix + now.toString(QStringLiteral("yyyy-MM-dd-HHmmss")) + LayoutBackup::extension;
    if (const AtomicFile::Result result =
            AtomicFile::write(QDir(folder()).filePath(name), LayoutBackup::encode(snapshot));
        !result) {
        qCWarning(lcAutoBackup, "auto backup failed: %s", qUtf8Printable(result.error));
        return false;
    }
    qCInfo(lcAutoBackup, "auto backup written: %s", qUtf8Printable(name));
    prune(folder());
    return true;
}

QList<AutoBackup::Entry> AutoBackup::entries() const {
    QList<Entry> entries;
    const QDir dir(folder());
    for (const QString& name : autoNames(folder())) {
        const LayoutBackup::Decoded decoded = LayoutBackup::read(dir.filePath(name));
        const auto* snapshot = std::get_if<LayoutBackup::Snapshot>(&decoded);
        if (!snapshot) {
            continue;
        }
        const std::optional<GridLayout> grid =
            GridLayout::fromJsonText(snapshot->files.value(QStringLiteral("grid.json")));
        entries.append({.path = dir.filePath(name),
                        .date = snapshot->exportedAt,
                        .widgets = grid ? int(grid->instances.size()) : 0});
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.date > b.date; });
    return entries;
}

std::optional<QString> AutoBackup::restore(const Entry& entry, const QDateTime& now) {
    const LayoutBackup::Decoded decoded = LayoutBackup::read(entry.path);
    if (const auto* error = std::get_if<LayoutBackup::BackupError>(&decoded)) {
        return LayoutBackup::message(*error);
    }
    if (!LayoutBackup::backUpCurrentSetup(m_setup, now)) {
        return L("backup.import.failed", QStringLiteral("The layout could not be loaded."));
    }
    if (const std::optional<QString> failed =
            LayoutBackup::apply(std::get<LayoutBackup::Snapshot>(decoded), m_setup)) {
        qCWarning(lcAutoBackup, "restore failed: %s", qUtf8Printable(*failed));
        return L("backup.import.failed", QStringLiteral("The layout could not be loaded."));
    }
    return std::nullopt;
}

} // namespace tw
