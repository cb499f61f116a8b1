// The applications installed on a freedesktop.org desktop as they are at one moment: every
// desktop entry by its id, and the chain of "mimeapps.list" files that says which of them
// handles what.
#pragma once

#include "platform/linux/DesktopEntry.h"
#include "platform/linux/MimeAppsList.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tw {

class XdgApplications {
public:
    // Reads $XDG_DATA_HOME and $XDG_DATA_DIRS "applications" and the "mimeapps.list" chain,
    // for the desktops named in $XDG_CURRENT_DESKTOP.
    static XdgApplications scan();

    // The "mimeapps.list" files, most important first: each config directory, then each
    // data directory's "applications", and in each the desktop-specific file before the
    // general one.
    static QStringList mimeAppsFiles(const QStringList& desktops);

    // The entry that opens `mimeType` (also "x-scheme-handler/<scheme>"): the first installed
    // default along the chain, else an added association, else any entry declaring the type
    // that no file removed. A file path.
    std::optional<QString> handlerFor(const QString& mimeType) const;
    // The first entry, by id, shown in menus and listing `category` among its Categories.
    std::optional<QString> withCategory(const QString& category) const;
    // The same for a word among its Keywords.
    std::optional<QString> withKeyword(const QString& keyword) const;
    // The name of the application whose windows carry `windowClass`: by StartupWMClass, else by
    // an id that is the class or ends in ".<class>", ignoring case.
    std::optional<QString> nameForWindowClass(const QString& windowClass) const;
    // The entry of that application, with its id ("org.gnome.Nautilus.desktop").
    struct Found {
        QString id;
        DesktopEntry entry;
    };
    std::optional<Found> entryForWindowClass(const QString& windowClass) const;
    // Every entry menus show here (launchable, not NoDisplay, with a name), by id.
    QList<Found> shown() const;
    // The file of an installed entry by its id; nullopt when none is launchable here.
    std::optional<QString> pathOf(const QString& id) const;

private:
    struct Installed {
        QString id;
        QString path;
        DesktopEntry entry;
    };

    const Installed* launchable(const QString& id) const;
    template <typename Matches>
    std::optional<QString> firstShown(Matches matches) const;

    QStringList m_desktops;
    QList<Installed> m_installed;
    QHash<QString, qsizetype> m_byId;
    QList<MimeAppsList> m_lists;
};

} // namespace tw
