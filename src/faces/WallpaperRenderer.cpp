#include "faces/WallpaperRenderer.h"

#include "platform/AtomicFile.h"
#include "platform/DesktopPictureSetter.h"

#include <QBuffer>
#include <QDir>
#include <QLoggingCategory>
#include <QPainter>

namespace tw {

Q_LOGGING_CATEGORY(lcWallpaperRenderer, "Wallpaper")

namespace {

bool writePicture(const QImage& image, const QString& path) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (image.isNull() || !image.save(&buffer, "PNG")) {
        qCWarning(lcWallpaperRenderer, "could not encode %s", qUtf8Printable(path));
        return false;
    }
    if (const AtomicFile::Result result = AtomicFile::write(path, bytes); !result) {
        qCWarning(lcWallpaperRenderer, "%s", qUtf8Printable(result.error));
        return false;
    }
    return true;
}

} // namespace

QImage WallpaperRenderer::render(const Wallpaper& wallpaper, const QSize& pixels, double seconds) {
    if (pixels.isEmpty() || qint64(pixels.width()) * pixels.height() > maximumPixels) {
        return {};
    }
    QImage image(pixels, QImage::Format_RGB32);
    if (image.isNull()) {
        return {};
    }
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    wallpaper.draw(painter, QSizeF(pixels), seconds);
    return image;
}

QString WallpaperRenderer::fileName(const Wallpaper& wallpaper, const QSize& pixels) {
    return QStringLiteral("%1-%2x%3.png")
        .arg(wallpaper.id)
        .arg(pixels.width())
        .arg(pixels.height());
}

int WallpaperRenderer::writeAll(const QString& directory, const QSize& pixels) {
    if (!QDir().mkpath(directory)) {
        qCWarning(lcWallpaperRenderer, "cannot make the folder %s", qUtf8Printable(directory));
        return 0;
    }
    const QDir dir(directory);
    int written = 0;
    for (const Wallpaper& wallpaper : Wallpaper::all()) {
        written +=
            writePicture(render(wallpaper, pixels), dir.filePath(fileName(wallpaper, pixels))) ? 1
                                                                                               : 0;
    }
    return written;
}

int WallpaperRenderer::applyEverywhere(const QString& id, DesktopPictureSetter& setter,
                                       const QString& directory) {
    const Wallpaper* wallpaper = Wallpaper::find(id);
    if (wallpaper == nullptr) {
        return -1;
    }
    if (!QDir().mkpath(directory)) {
        qCWarning(lcWallpaperRenderer, "cannot make the folder %s", qUtf8Printable(directory));
        return 0;
    }
    const QDir dir(directory);
    QList<DesktopPictureSetter::Target> shown;
    QStringList files;
    for (const DesktopPictureSetter::Target& target : setter.targets()) {
        const QString path = dir.filePath(fileName(*wallpaper, target.pixels.size()));
        // Displays of one size share a file.
        if (files.contains(path) || writePicture(render(*wallpaper, target.pixels.size()), path)) {
            shown.append(target);
            files.append(path);
        }
    }
    if (shown.isEmpty()) {
        qCWarning(lcWallpaperRenderer, "no display to show %s on", qUtf8Printable(id));
        return 0;
    }
    return setter.show(shown, files);
}

} // namespace tw
