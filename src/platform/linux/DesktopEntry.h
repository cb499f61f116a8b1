// The parts of a freedesktop.org desktop entry ("*.desktop") needed to find and start an
// application.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace tw {

struct DesktopEntry {
    QString name;
    QString exec;
    // Working directory, empty for none.
    QString path;
    bool isApplication = false;
    // Hidden=true means deleted as far as the user is concerned.
    bool hidden = false;
    // NoDisplay=true: installed, but not offered in menus (often a handler of some file type).
    bool noDisplay = false;
    // A program that must exist for the entry to count as installed; empty for none.
    QString tryExec;
    // The window class the application's windows carry, where it differs from the entry's id.
    QString startupWMClass;
    // An icon theme's name, or a file.
    QString icon;
    // The list values, split at ";".
    QStringList categories;
    QStringList keywords;
    QStringList mimeTypes;
    QStringList onlyShowIn;
    QStringList notShowIn;

    bool operator==(const DesktopEntry&) const = default;

    // The [Desktop Entry] group of a file; nullopt when it has none.
    static std::optional<DesktopEntry> parse(const QByteArray& text);
    // Only a regular file of at most `maximumSize` bytes is read: a pipe or a device in an
    // applications directory must not hang the reader.
    static std::optional<DesktopEntry> read(const QString& filePath);
    static constexpr qint64 maximumSize = 256 * 1024;

    // An application that may run here: not hidden, something to run, its TryExec present,
    // and shown in `desktops` (XDG_CURRENT_DESKTOP's names) by OnlyShowIn and NotShowIn.
    bool isLaunchable(const QStringList& desktops) const;

    // Exec split into program and arguments: quotes and escapes resolved, field codes such
    // as %U dropped, "%%" made "%". Empty when there is nothing to run.
    QStringList commandLine() const;
};

} // namespace tw
