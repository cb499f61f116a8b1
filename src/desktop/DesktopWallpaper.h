// The current desktop picture as small pictures: the primary display's picture file, or the part
// of the root window's picture on it, read at the size asked for and kept by that size until the
// desktop says its picture changed. The palette's "Match my wallpaper" theme reads through it.
#pragma once

#include "look/Theme.h"
#include "look/WallpaperPalette.h"

#include <QHash>
#include <QImage>
#include <QObject>
#include <QString>

#include <optional>

namespace tw {

class DesktopPicture;

class DesktopWallpaper final : public QObject {
    Q_OBJECT
public:
    // The largest thumbnail the palette reads.
    static constexpr int paletteThumbnail = 400;

    // `picture` may be null: then there is no picture.
    explicit DesktopWallpaper(DesktopPicture* picture, QObject* parent = nullptr);

    // The file of the picture last read; empty before, after a change, or for a root picture.
    QString path() const { return m_path; }
    // The picture no larger than `maxPixelSize` on its longer side, its shape kept; a null image
    // without a picture, or one that cannot be read.
    QImage thumbnail(int maxPixelSize);
    // The theme of the picture; nullopt without one.
    std::optional<Theme> currentTheme();

    // The picture drawn into a `side` × `side` square and read pixel by pixel.
    static QList<WallpaperPalette::RGB> pixels(const QImage& picture, int side);

Q_SIGNALS:
    // The desktop's picture may have changed; thumbnails are read afresh.
    void changed();

private:
    QImage read(int maxPixelSize);

    DesktopPicture* m_picture;
    QString m_path;
    QHash<int, QImage> m_thumbnails;
};

} // namespace tw
