#include "desktop/DesktopWallpaper.h"

#include "desktop/WallpaperBackdrop.h"
#include "platform/DesktopPicture.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QPainter>
#include <QScreen>

#include <algorithm>

namespace tw {

DesktopWallpaper::DesktopWallpaper(DesktopPicture* picture, QObject* parent)
    : QObject(parent)
    , m_picture(picture) {
    if (m_picture != nullptr) {
        connect(m_picture, &DesktopPicture::changed, this, [this] {
            m_path.clear();
            m_thumbnails.clear();
            Q_EMIT changed();
        });
    }
}

QImage DesktopWallpaper::thumbnail(int maxPixelSize) {
    if (maxPixelSize < 1) {
        return {};
    }
    const auto cached = m_thumbnails.constFind(maxPixelSize);
    if (cached != m_thumbnails.cend()) {
        return *cached;
    }
    const QImage image = read(maxPixelSize);
    // A picture that can't be read stays unread until the desktop names another.
    m_thumbnails.insert(maxPixelSize, image);
    return image;
}

std::optional<Theme> DesktopWallpaper::currentTheme() {
    const QImage image = thumbnail(paletteThumbnail);
    if (image.isNull()) {
        return std::nullopt;
    }
    return WallpaperPalette::theme(pixels(image, WallpaperPalette::sampleSide));
}

QList<WallpaperPalette::RGB> DesktopWallpaper::pixels(const QImage& picture, int side) {
    QList<WallpaperPalette::RGB> out;
    if (picture.isNull() || side < 1) {
        return out;
    }
    QImage square(side, side, QImage::Format_RGB32);
    square.fill(Qt::black);
    {
        QPainter painter(&square);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(square.rect(), picture);
    }
    out.reserve(qsizetype(side) * side);
    for (int y = 0; y < side; ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(square.constScanLine(y));
        for (int x = 0; x < side; ++x) {
            out.append({qRed(line[x]) / 255.0, qGreen(line[x]) / 255.0, qBlue(line[x]) / 255.0});
        }
    }
    return out;
}

QImage DesktopWallpaper::read(int maxPixelSize) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (m_picture == nullptr || screen == nullptr) {
        return {};
    }
    const auto fitInside = [maxPixelSize](QSize size) {
        return size.scaled(QSize(maxPixelSize, maxPixelSize), Qt::KeepAspectRatio)
            .boundedTo(size)
            .expandedTo(QSize(1, 1));
    };
    const auto setting = m_picture->setting(screen->name());
    if (!setting || setting->file.isEmpty()) {
        const qreal ratio = screen->devicePixelRatio();
        const QImage root = m_picture->rootPicture().copy(
            QRect(screen->geometry().topLeft() * ratio, screen->geometry().size() * ratio));
        return root.isNull() ? QImage()
                             : root.scaled(fitInside(root.size()), Qt::IgnoreAspectRatio,
                                           Qt::SmoothTransformation);
    }
    m_path = setting->file;
    QImageReader reader(setting->file);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid() &&
        static_cast<qint64>(size.width()) * size.height() > WallpaperBackdrop::maxPixels) {
        return {};
    }
    // Decoders that can scale while reading do; the rest, and turned pictures, are scaled after.
    if (size.isValid()) {
        reader.setScaledSize(fitInside(size));
    }
    const QImage image = reader.read();
    return image.isNull() || std::max(image.width(), image.height()) <= maxPixelSize
               ? image
               : image.scaled(fitInside(image.size()), Qt::IgnoreAspectRatio,
                              Qt::SmoothTransformation);
}

} // namespace tw
