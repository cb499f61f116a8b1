// Where Plasma keeps each desktop's picture: the desktop containments of
// "plasma-org.kde.plasma.desktop-appletsrc" (the screen number and activity of each, and its
// image wallpaper's Image and FillMode), "plasmashellrc"'s screen numbers to output names, and
// "kactivitymanagerdrc"'s current activity.
#pragma once

#include "platform/DesktopPicture.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct PlasmaWallpaperConfig {
    struct Desktop {
        int screen = -1;
        QString activity;
        // Empty when the desktop shows something other than a picture file (a slideshow, a
        // colour) or Plasma's default picture.
        QString image;
        int fillMode = 2;
        bool operator==(const Desktop&) const = default;
    };
    // In the files' order.
    QList<Desktop> desktops;
    // Screen number to output name.
    QHash<int, QString> connectors;
    QString currentActivity;

    bool operator==(const PlasmaWallpaperConfig&) const = default;

    // Lenient: any bytes read as some configuration, possibly empty.
    static PlasmaWallpaperConfig parse(const QByteArray& appletsrc, const QByteArray& shellrc,
                                       const QByteArray& activitiesrc);

    // The picture on the display of that output name, its identity left empty: the desktop of
    // its screen number (the first screen when the files do not name it), of the current
    // activity when there are several. A directory is returned as it is (a wallpaper package).
    std::optional<DesktopPicture::Setting> settingFor(const QString& screen) const;
};

} // namespace tw
