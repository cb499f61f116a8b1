// The parts of a freedesktop.org desktop entry ("*.desktop") needed to start an application.
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

    bool operator==(const DesktopEntry&) const = default;

    // The [Desktop Entry] group of a file; nullopt when it has none.
    static std::optional<DesktopEntry> parse(const QByteArray& text);
    static std::optional<DesktopEntry> read(const QString& filePath);

    // Exec split into program and arguments: quotes and escapes resolved, field codes such
    // as %U dropped, "%%" made "%". Empty when there is nothing to run.
    QStringList commandLine() const;
};

} // namespace tw
