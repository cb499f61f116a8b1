// What the system knows of an application by its id: the name people read, its icon and the
// kind of application it is.
#pragma once

#include "platform/AppCategory.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace tw {

struct AppListing {
    QString name;
    // A picture file of its icon; empty for none.
    QString icon;
    AppCategory category = AppCategory::other;
    // Its window is the screen locker or saver: nobody uses the machine while it is in front.
    bool isScreenLocker = false;

    bool operator==(const AppListing&) const = default;
};

// An application people may start from a menu.
struct InstalledApp {
    // Its desktop-entry id without ".desktop" ("org.gnome.Calculator"), as
    // `Workspace::applicationForIdentifier` takes it.
    QString id;
    QString name;
    // An icon theme's name for it, or a file; `AppDirectory::iconFile` finds the picture.
    QString icon;
    // Words a search should find it by besides its name.
    QStringList keywords;

    bool operator==(const InstalledApp&) const = default;
};

class AppDirectory {
public:
    virtual ~AppDirectory() = default;

    // An application not installed here has its id as name, no icon and `other`.
    virtual AppListing listing(const QString& id) const = 0;
    // The file of an icon theme's icon by its name; empty where none is installed.
    virtual QString iconFile(const QString& iconName) const = 0;
    // Every application menus offer here, read afresh, by name.
    virtual QList<InstalledApp> applications() const = 0;
};

} // namespace tw
