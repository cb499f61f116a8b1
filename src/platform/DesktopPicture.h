// The picture the running desktop shows on each display, as its own settings keep it.
#pragma once

#include <QObject>
#include <QString>

#include <optional>

class QImage;

namespace tw {

class DesktopPicture : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // How the desktop fits its picture to a display.
    enum class Fill {
        zoom,    // covers the display, cropped, centred
        fit,     // the whole picture, centred, with bars
        stretch, // both axes to the display
        center,  // no scaling
        tile,
        span, // one picture across all displays, zoomed
    };
    struct Setting {
        QString file; // a local file; empty when the desktop publishes only the root picture
        Fill fill = Fill::zoom;
        // Changes whenever what the display shows changes: source, path, modification time, fill.
        QString identity;
        bool operator==(const Setting&) const = default;
    };

    // The picture on the display of this connector name ("DP-1"); nullopt when not known.
    virtual std::optional<Setting> setting(const QString& screen) const = 0;
    // The root window's picture over the whole virtual screen (origin at its top-left), for
    // desktops that publish only that; a null image when there is none.
    virtual QImage rootPicture() const = 0;

Q_SIGNALS:
    // The picture of some display may have changed; what was made of it is to be dropped.
    void changed();
};

} // namespace tw
