// A layout file about once a day, only when something changed, the last five kept.
#pragma once

#include "backup/LayoutBackup.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace tw {

class AutoBackup {
public:
    struct Entry {
        QString path;
        QDateTime date;
        // Instances in the file's "grid.json".
        int widgets = 0;

        bool operator==(const Entry&) const = default;
    };

    static inline const QString enabledKey = QStringLiteral("tarnwick.backup.auto");
    static inline const QString prefix = QStringLiteral("auto-");
    static constexpr std::chrono::seconds interval{86400};
    static constexpr int kept = 5;

    explicit AutoBackup(LayoutBackup::Setup setup);

    // The key, on when absent.
    bool isEnabled() const;

    enum class Force { no, yes };
    // Writes "Backups/auto-<date>.twklayout" when due and changed (or forced) and prunes the
    // folder; true when a file was written. Failures are logged, never shown.
    bool runIfDue(const QDateTime& now, Force force = Force::no);
    // Every readable automatic backup, newest first.
    QList<Entry> entries() const;
    // Backs the current setup up, then applies the entry's file; the caller relaunches. Gives
    // the words for a person when it failed.
    std::optional<QString> restore(const Entry& entry, const QDateTime& now);

    QString folder() const;

    // SHA-256 over "grid.json" without its save time, the other files by name and the
    // preferences; neither the export time nor the version count.
    static QString fingerprint(const LayoutBackup::Snapshot& snapshot);
    // The "auto-*.twklayout" names of a folder, oldest first.
    static QStringList autoNames(const QString& folder);
    // Leaves the newest five automatic backups; other files are never touched.
    static void prune(const QString& folder);

private:
    LayoutBackup::Setup m_setup;
};

} // namespace tw
