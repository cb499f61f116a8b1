// What the system knows of an application by its id: the name people read, its icon and the
// kind of application it is.
#pragma once

#include "platform/AppCategory.h"

#include <QString>

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

class AppDirectory {
public:
    virtual ~AppDirectory() = default;

    // An application not installed here has its id as name, no icon and `other`.
    virtual AppListing listing(const QString& id) const = 0;
    // The file of an icon theme's icon by its name; empty where none is installed.
    virtual QString iconFile(const QString& iconName) const = 0;
};

} // namespace tw
