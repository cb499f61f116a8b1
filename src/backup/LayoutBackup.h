// The whole setup in one layout file: the data files byte for byte, the wallpaper pictures and
// the portable preferences, written out and put back in place of everything.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace tw {

class Defaults;

class LayoutBackup {
public:
    LayoutBackup() = delete;

    struct Snapshot {
        int format = 1;
        QString appVersion;
        QDateTime exportedAt;
        // File name to the file's bytes.
        QMap<QString, QByteArray> files;
        // Picture name to its bytes; empty in automatic backups.
        QMap<QString, QByteArray> wallpapers;
        // The portable preferences as a property list.
        QByteArray defaults;

        bool operator==(const Snapshot&) const = default;
    };

    enum class BackupError { unreadable, wrongFormat, newerFormat };
    static QString message(BackupError error);
    using Decoded = std::variant<Snapshot, BackupError>;

    // Where the setup lives and what writes it.
    struct Setup {
        QString directory;
        Defaults& defaults;
        QString appVersion;
    };

    static constexpr int currentFormat = 1;
    // Layout files with pictures are large, but not this large.
    static constexpr qint64 maxFileBytes = 256 * 1024 * 1024;
    static inline const QString extension = QStringLiteral(".twklayout");
    static inline const QString wallpapersFolder = QStringLiteral("Wallpapers");
    static inline const QString backupsFolder = QStringLiteral("Backups");
    // The data files a layout carries, when they exist.
    static const QStringList& dataFileNames();

    // A "tarnwick." key (or "twk_active_wallpaper") that is no per-machine marker, first-run
    // flag or hardware list.
    static bool isPortableDefault(const QString& key);

    enum class Wallpapers { excluded, included };
    // A data file that exists but cannot be read is left out and logged.
    static Snapshot makeSnapshot(const Setup& setup, const QDateTime& now, Wallpapers wallpapers);

    // JSON, keys in the documented order, dates in ISO 8601, bytes in base64.
    static QByteArray encode(const Snapshot& snapshot);
    // Not a layout file: wrongFormat; a later format: newerFormat. A member of "files" or
    // "wallpapers" that is not base64 is dropped.
    static Decoded decode(const QByteArray& bytes);
    // Reads and decodes a file; a file that cannot be read is unreadable.
    static Decoded read(const QString& path);

    // Replaces the setup: every data file (one missing from the snapshot is removed), the
    // pictures it carries and the portable preferences. The new state is staged beside the old
    // and committed by one rename, so that an interruption at any point leaves the old setup or,
    // once finishPendingRestore() has run, the new one; never a mix. Gives what failed, if any.
    static std::optional<QString> apply(const Snapshot& snapshot, const Setup& setup);
    // Completes a committed restore that a crash cut short and discards an uncommitted one; call
    // before any store reads its file. True when a restore was completed.
    static bool finishPendingRestore(const Setup& setup);

    // The setup with its pictures, into "Backups/before-import-<date>.twklayout". Gives the path,
    // or nothing when it could not be written (logged).
    static std::optional<QString> backUpCurrentSetup(const Setup& setup, const QDateTime& now);

    // "Tarnwick Layout yyyy-MM-dd HH.mm".
    static QString proposedName(const QDateTime& now);
};

} // namespace tw
