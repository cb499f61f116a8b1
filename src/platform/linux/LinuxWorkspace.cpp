#include "platform/linux/LinuxWorkspace.h"

#include "platform/linux/DesktopEntry.h"
#include "platform/linux/XdgApplications.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace tw {

namespace {

QStringList applicationDirectories() {
    return QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
}

bool isLaunchable(const QString& filePath) {
    const std::optional<DesktopEntry> entry = DesktopEntry::read(filePath);
    return entry &&
           entry->isLaunchable(qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':')));
}

// How a desktop says which application takes a role: the handler of a MIME type or URL
// scheme first, in this order, then an entry by its Categories, then one by its Keywords.
struct RoleHandlers {
    QStringList mimeTypes;
    QStringList categories;
    QStringList keywords;
};

RoleHandlers handlersFor(AppRole role) {
    switch (role) {
    case AppRole::calendar:
        return {{QStringLiteral("text/calendar"), QStringLiteral("x-scheme-handler/webcal")},
                {QStringLiteral("Calendar")},
                {}};
    case AppRole::clock:
        return {{}, {QStringLiteral("Clock")}, {QStringLiteral("Alarm")}};
    case AppRole::weather:
        return {{}, {}, {QStringLiteral("Weather"), QStringLiteral("Forecast")}};
    case AppRole::systemMonitor:
        return {{}, {QStringLiteral("Monitor")}, {QStringLiteral("Processes")}};
    case AppRole::settings:
        return {{}, {QStringLiteral("DesktopSettings"), QStringLiteral("Settings")}, {}};
    case AppRole::photos:
        return {{QStringLiteral("image/jpeg"), QStringLiteral("image/png")},
                {QStringLiteral("Photography"), QStringLiteral("Viewer")},
                {}};
    case AppRole::terminal:
        return {{QStringLiteral("x-scheme-handler/terminal")},
                {QStringLiteral("TerminalEmulator")},
                {}};
    case AppRole::fileManager:
        return {{QStringLiteral("inode/directory")}, {QStringLiteral("FileManager")}, {}};
    case AppRole::musicPlayer:
        return {{QStringLiteral("audio/mpeg"), QStringLiteral("audio/flac")},
                {QStringLiteral("Music")},
                {}};
    }
    return {};
}

} // namespace

LaunchResult LinuxWorkspace::open(const QUrl& url) {
    const QString target = url.isLocalFile() ? url.toLocalFile() : url.toString(QUrl::FullyEncoded);
    return startDetached(QStringLiteral("xdg-open"), {target});
}

std::optional<QString> LinuxWorkspace::applicationForIdentifier(const QString& identifier) const {
    const QString fileName = identifier + QLatin1String(".desktop");
    for (const QString& directory : applicationDirectories()) {
        const QString filePath = QDir(directory).filePath(fileName);
        if (QFileInfo::exists(filePath) && isLaunchable(filePath)) {
            return filePath;
        }
    }
    return std::nullopt;
}

std::optional<QString> LinuxWorkspace::applicationNamed(const QString& name) const {
    for (const QString& directory : applicationDirectories()) {
        const QFileInfoList files =
            QDir(directory).entryInfoList({QStringLiteral("*.desktop")}, QDir::Files, QDir::Name);
        for (const QFileInfo& file : files) {
            const std::optional<DesktopEntry> entry = DesktopEntry::read(file.filePath());
            if (!entry || !entry->isApplication || entry->hidden) {
                continue;
            }
            if (entry->name.compare(name, Qt::CaseInsensitive) == 0 ||
                file.completeBaseName().compare(name, Qt::CaseInsensitive) == 0) {
                return file.filePath();
            }
        }
    }
    return std::nullopt;
}

std::optional<QString> LinuxWorkspace::applicationForRole(AppRole role) const {
    const XdgApplications applications = XdgApplications::scan();
    const RoleHandlers handlers = handlersFor(role);
    for (const QString& mimeType : handlers.mimeTypes) {
        if (auto path = applications.handlerFor(mimeType)) {
            return path;
        }
    }
    for (const QString& category : handlers.categories) {
        if (auto path = applications.withCategory(category)) {
            return path;
        }
    }
    for (const QString& keyword : handlers.keywords) {
        if (auto path = applications.withKeyword(keyword)) {
            return path;
        }
    }
    return std::nullopt;
}

LaunchResult LinuxWorkspace::openApplication(const QString& location) {
    const std::optional<DesktopEntry> entry = DesktopEntry::read(location);
    const QStringList command = entry ? entry->commandLine() : QStringList();
    if (command.isEmpty()) {
        return LaunchResult::failure(location + QLatin1String(" has nothing to run"));
    }
    QProcess process;
    process.setProgram(command.first());
    process.setArguments(command.mid(1));
    if (!entry->path.isEmpty()) {
        process.setWorkingDirectory(entry->path);
    }
    if (!process.startDetached()) {
        return LaunchResult::failure(QLatin1String("could not start ") + command.first() +
                                     QLatin1String(" for ") + location);
    }
    return LaunchResult::success();
}

LaunchResult LinuxWorkspace::openApplicationByName(const QString& name) {
    for (const QString& candidate : {name, name.toLower()}) {
        const QString program = QStandardPaths::findExecutable(candidate);
        if (!program.isEmpty()) {
            return startDetached(program, {});
        }
    }
    return LaunchResult::failure(QLatin1String("no application named ") + name);
}

LaunchResult LinuxWorkspace::runShortcut(const QString& name) {
    return LaunchResult::failure(QLatin1String("no shortcuts on this desktop to run ") + name);
}

LaunchResult LinuxWorkspace::startDetached(const QString& program, const QStringList& arguments) {
    if (!QProcess::startDetached(program, arguments)) {
        return LaunchResult::failure(QLatin1String("could not start ") + program);
    }
    return LaunchResult::success();
}

} // namespace tw
