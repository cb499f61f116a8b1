// Where Xfce keeps each display's picture: xfconf's "xfce4-desktop.xml" channel, the properties
// /backdrop/screen0/monitor<output>/workspace0/last-image and image-style.
#pragma once

#include "platform/DesktopPicture.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct XfceBackdropConfig {
    struct Monitor {
        // The output name ("DP-1"; older files number them: "0").
        QString name;
        QString image;
        // None, centred, tiled, stretched, scaled, zoomed, spanning.
        int style = 5;
        bool operator==(const Monitor&) const = default;
    };
    QList<Monitor> monitors;

    bool operator==(const XfceBackdropConfig&) const = default;

    // Lenient: what was read before any error in the XML is kept.
    static XfceBackdropConfig parse(const QByteArray& xml);

    // The picture on the display of that output name (the first monitor with a picture when
    // the file has none of that name), its identity left empty; nullopt for no picture.
    std::optional<DesktopPicture::Setting> settingFor(const QString& screen) const;
};

} // namespace tw
