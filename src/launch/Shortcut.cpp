#include "launch/Shortcut.h"

#include "launch/CommandLine.h"
#include "model/WidgetAction.h"

#include <QFileInfo>
#include <QProcess>
#include <QUrl>

namespace tw {

QString Shortcut::keyOf(Type type) {
    switch (type) {
    case Type::app:
        return QStringLiteral("app");
    case Type::url:
        return QStringLiteral("url");
    case Type::file:
        return QStringLiteral("file");
    case Type::command:
        return QStringLiteral("command");
    }
    return QStringLiteral("app");
}

Shortcut Shortcut::fromSettings(const WidgetSettings& settings) {
    Shortcut out;
    const QString type = settings.value(typeKey());
    for (const Type candidate : {Type::app, Type::url, Type::file, Type::command}) {
        if (type == keyOf(candidate)) {
            out.type = candidate;
        }
    }
    out.target = settings.value(keyOf(out.type)).trimmed();
    out.name = settings.value(QStringLiteral("name")).trimmed();
    return out;
}

QString Shortcut::title(const QString& appName) const {
    if (!name.isEmpty()) {
        return name;
    }
    switch (type) {
    case Type::app:
        return appName.isEmpty() ? target : appName;
    case Type::url: {
        const std::optional<QUrl> url = WidgetAction::resolvedURL(target);
        QString host = url ? url->host() : QString();
        if (host.startsWith(QLatin1String("www."))) {
            host = host.mid(4);
        }
        return host.isEmpty() ? target : host;
    }
    case Type::file: {
        const QString fileName = QFileInfo(target).fileName();
        return fileName.isEmpty() ? target : fileName;
    }
    case Type::command: {
        const QString program = CommandLine::parse(target, QString()).command.program;
        return program.isEmpty() ? target : QFileInfo(program).fileName();
    }
    }
    return target;
}

QString Shortcut::path(const QString& home) const {
    if (target == QLatin1String("~")) {
        return home;
    }
    if (target.startsWith(QLatin1String("~/"))) {
        return home + target.mid(1);
    }
    if (target.startsWith(QLatin1String("file:"))) {
        return QUrl(target).toLocalFile();
    }
    return target;
}

LaunchResult Shortcut::open(Workspace& workspace, const QString& home) const {
    if (!isSet()) {
        return LaunchResult::failure(QStringLiteral("nothing chosen to open"));
    }
    switch (type) {
    case Type::app:
        return WidgetAction::openApp(workspace, target);
    case Type::url:
        return WidgetAction::openURL(workspace, target);
    case Type::file: {
        const QString file = path(home);
        if (!QFileInfo::exists(file)) {
            return LaunchResult::failure(QLatin1String("nothing at ") + file);
        }
        return workspace.open(QUrl::fromLocalFile(file));
    }
    case Type::command: {
        const ParsedCommand parsed = CommandLine::parse(target, home);
        if (!parsed.error.isEmpty()) {
            return LaunchResult::failure(parsed.error);
        }
        if (!QProcess::startDetached(parsed.command.program, parsed.command.arguments, home)) {
            return LaunchResult::failure(QLatin1String("could not start ") +
                                         parsed.command.program);
        }
        return LaunchResult::success();
    }
    }
    return LaunchResult::failure(QStringLiteral("unknown shortcut"));
}

} // namespace tw
