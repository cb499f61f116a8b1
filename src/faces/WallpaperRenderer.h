// Draws the built-in wallpapers to pictures and files, and puts one on every display.
#pragma once

#include "faces/Wallpaper.h"

#include <QImage>
#include <QSize>
#include <QString>

namespace tw {

class DesktopPictureSetter;

class WallpaperRenderer {
public:
    WallpaperRenderer() = delete;

    // Larger pictures are not drawn: no display needs one, and memory is finite.
    static constexpr qint64 maximumPixels = qint64(16384) * 16384;

    // The wallpaper at `pixels`, opaque, `seconds` into its loop (a still one ignores it); a
    // null image for an empty or too large size.
    static QImage render(const Wallpaper& wallpaper, const QSize& pixels, double seconds = 0);
    // The file name of a wallpaper at a size, "<id>-<width>x<height>.png".
    static QString fileName(const Wallpaper& wallpaper, const QSize& pixels);
    // One PNG per built-in at `pixels` into `directory` (made when missing); how many were written.
    static int writeAll(const QString& directory, const QSize& pixels);
    // Draws the wallpaper of this id at each display's pixel size into `directory` and has the
    // desktop show it; how many displays were given it, -1 for an id no built-in has.
    static int applyEverywhere(const QString& id, DesktopPictureSetter& setter,
                               const QString& directory);
};

} // namespace tw
