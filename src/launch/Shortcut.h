// What a shortcut tile opens: an application, a web address, a file or folder, or a command
// (a program and its arguments, started on its own, never through a shell).
#pragma once

#include "model/WidgetInstance.h"
#include "platform/Workspace.h"

#include <QString>

namespace tw {

struct Shortcut {
    enum class Type { app, url, file, command };

    Type type = Type::app;
    // A desktop-entry id, an address, a path ("~/" allowed) or a command line.
    QString target;
    // The person's title; empty for one made from the target.
    QString name;

    bool operator==(const Shortcut&) const = default;

    // "type" and the key of its type ("app", "url", "file", "command"), "name".
    static Shortcut fromSettings(const WidgetSettings& settings);
    static QString typeKey() { return QStringLiteral("type"); }
    static QString keyOf(Type type);

    bool isSet() const { return !target.trimmed().isEmpty(); }
    // The name, else what the target calls itself: `appName` for an application, the host of an
    // address, a file's name, a command's program.
    QString title(const QString& appName) const;
    // A file's path with "~" read as `home`.
    QString path(const QString& home) const;
    // Opens it; a command starts in `home`.
    LaunchResult open(Workspace& workspace, const QString& home) const;
};

} // namespace tw
