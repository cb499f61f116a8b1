#include "platform/linux/XdgApplications.h"

#include <QDir>
#include <QDirIterator>
#include <QStandardPaths>

#include <algorithm>

namespace tw {

namespace {

QStringList currentDesktops() {
    QStringList desktops;
    const QString names = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    for (const QString& name : names.split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
        desktops.append(name.toLower());
    }
    return desktops;
}

// Both list desktops in the same order; the application directories end in "/applications".
QStringList listFilesIn(const QStringList& directories, const QStringList& desktops) {
    QStringList files;
    for (const QString& directory : directories) {
        for (const QString& desktop : desktops) {
            files.append(QDir(directory).filePath(desktop + QLatin1String("-mimeapps.list")));
        }
        files.append(QDir(directory).filePath(QStringLiteral("mimeapps.list")));
    }
    return files;
}

} // namespace

QStringList XdgApplications::mimeAppsFiles(const QStringList& desktops) {
    return listFilesIn(QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation),
                       desktops) +
           listFilesIn(QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation),
                       desktops);
}

XdgApplications XdgApplications::scan() {
    XdgApplications applications;
    applications.m_desktops = currentDesktops();
    for (const QString& directory :
         QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        const QDir root(directory);
        QDirIterator it(directory, {QStringLiteral("*.desktop")}, QDir::Files,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            // "kde/app.desktop" has the id "kde-app.desktop"; an earlier directory wins.
            const QString id =
                root.relativeFilePath(path).replace(QLatin1Char('/'), QLatin1Char('-'));
            if (applications.m_byId.contains(id)) {
                continue;
            }
            if (auto entry = DesktopEntry::read(path)) {
                applications.m_byId.insert(id, applications.m_installed.size());
                applications.m_installed.append({id, path, std::move(*entry)});
            }
        }
    }
    std::sort(applications.m_installed.begin(), applications.m_installed.end(),
              [](const Installed& a, const Installed& b) { return a.id < b.id; });
    for (qsizetype i = 0; i < applications.m_installed.size(); ++i) {
        applications.m_byId.insert(applications.m_installed.at(i).id, i);
    }
    for (const QString& file : mimeAppsFiles(applications.m_desktops)) {
        applications.m_lists.append(MimeAppsList::read(file));
    }
    return applications;
}

const XdgApplications::Installed* XdgApplications::launchable(const QString& id) const {
    const auto it = m_byId.constFind(id);
    if (it == m_byId.cend()) {
        return nullptr;
    }
    const Installed& installed = m_installed.at(*it);
    return installed.entry.isLaunchable(m_desktops) ? &installed : nullptr;
}

std::optional<QString> XdgApplications::handlerFor(const QString& mimeType) const {
    for (const MimeAppsList& list : m_lists) {
        for (const QString& id : list.defaults.value(mimeType)) {
            if (const Installed* installed = launchable(id)) {
                return installed->path;
            }
        }
    }
    // No default: an association, unless a file at least as important removed it.
    QStringList removed;
    for (const MimeAppsList& list : m_lists) {
        removed += list.removed.value(mimeType);
        for (const QString& id : list.added.value(mimeType)) {
            const Installed* installed = launchable(id);
            if (installed != nullptr && !removed.contains(id)) {
                return installed->path;
            }
        }
    }
    for (const Installed& installed : m_installed) {
        if (installed.entry.mimeTypes.contains(mimeType) && !removed.contains(installed.id) &&
            installed.entry.isLaunchable(m_desktops)) {
            return installed.path;
        }
    }
    return std::nullopt;
}

template <typename Matches>
std::optional<QString> XdgApplications::firstShown(Matches matches) const {
    for (const Installed& installed : m_installed) {
        if (!installed.entry.noDisplay && matches(installed.entry) &&
            installed.entry.isLaunchable(m_desktops)) {
            return installed.path;
        }
    }
    return std::nullopt;
}

std::optional<QString> XdgApplications::withCategory(const QString& category) const {
    return firstShown([&](const DesktopEntry& entry) {
        return entry.categories.contains(category, Qt::CaseInsensitive);
    });
}

std::optional<QString> XdgApplications::withKeyword(const QString& keyword) const {
    return firstShown([&](const DesktopEntry& entry) {
        return entry.keywords.contains(keyword, Qt::CaseInsensitive);
    });
}

std::optional<QString> XdgApplications::nameForWindowClass(const QString& windowClass) const {
    const std::optional<Found> found = entryForWindowClass(windowClass);
    return found ? std::optional(found->entry.name) : std::nullopt;
}

std::optional<XdgApplications::Found>
XdgApplications::entryForWindowClass(const QString& windowClass) const {
    if (windowClass.isEmpty()) {
        return std::nullopt;
    }
    for (const Installed& installed : m_installed) {
        if (installed.entry.startupWMClass.compare(windowClass, Qt::CaseInsensitive) == 0 &&
            !installed.entry.name.isEmpty()) {
            return Found{.id = installed.id, .entry = installed.entry};
        }
    }
    for (const Installed& installed : m_installed) {
        const QString id = installed.id.chopped(QLatin1String(".desktop").size());
        if ((id.compare(windowClass, Qt::CaseInsensitive) == 0 ||
             id.endsWith(QLatin1Char('.') + windowClass, Qt::CaseInsensitive)) &&
            !installed.entry.name.isEmpty()) {
            return Found{.id = installed.id, .entry = installed.entry};
        }
    }
    return std::nullopt;
}

QList<XdgApplications::Found> XdgApplications::shown() const {
    QList<Found> out;
    for (const Installed& installed : m_installed) {
        if (!installed.entry.noDisplay && !installed.entry.name.isEmpty() &&
            installed.entry.isLaunchable(m_desktops)) {
            out.append({.id = installed.id, .entry = installed.entry});
        }
    }
    return out;
}

std::optional<QString> XdgApplications::pathOf(const QString& id) const {
    const Installed* installed = launchable(id);
    return installed != nullptr ? std::optional(installed->path) : std::nullopt;
}

} // namespace tw
