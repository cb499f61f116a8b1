// The desktop picture as each display shows it, sharp and blurred for the glass. Each display's
// picture is read, fitted at the display's device pixels and blurred off the main thread once per
// picture; a panel then only crops what lies behind it, or, across displays, puts together the
// parts of each. A picture that cannot be read leaves that display without a backdrop, and its
// tiles draw the theme's surface.
#pragma once

#include "faces/GlassBackdrop.h"
#include "platform/DesktopPicture.h"

#include <QHash>
#include <QObject>
#include <QRect>
#include <QThreadPool>

#include <optional>

class QScreen;

namespace tw {

class WallpaperBackdrop final : public QObject {
    Q_OBJECT
public:
    // Pictures above this many pixels are not read.
    static constexpr qint64 maxPixels = 200'000'000;
    // The blurred pictures are made this many times smaller than the display, then blurred.
    static constexpr int frostedReduction = 8;
    static constexpr int clearReduction = 3;
    // Around a panel across displays, the picture put together reaches this far (logical pixels)
    // past it, for the lens's margin.
    static constexpr int composedMargin = 32;

    // `picture` may be null: then no display has a backdrop.
    explicit WallpaperBackdrop(DesktopPicture* picture, QObject* parent = nullptr);
    ~WallpaperBackdrop() override;

    // What lies behind a rectangle in the toolkit's global coordinates: the pictures of the
    // display under it, or, when it lies across several, the part of each display's pictures
    // under it put together; none while no display under it has a picture.
    std::optional<GlassBackdrop> behind(const QRect& rect) const;

    // A picture fitted to `display` (logical pixels) as the desktop fits it, made at `ratio`
    // pixels per logical pixel; centred and tiled pictures keep a pixel to a logical pixel.
    static QImage fitted(const QImage& picture, DesktopPicture::Fill fill, const QSize& display,
                         qreal ratio = 1);
    // The pixels per logical pixel worth keeping of a picture of `picture` pixels fitted to
    // `display`: the display's `devicePixelRatio`, but no more than the picture has detail for,
    // and at least one.
    static qreal detailRatio(const QSize& picture, DesktopPicture::Fill fill, const QSize& display,
                             qreal devicePixelRatio);
    // The picture `reduction` times smaller, blurred by about `radius` of its own pixels.
    static QImage blurred(const QImage& sharp, qreal reduction, int radius);

    // Reads every display's picture again.
    void refresh();

Q_SIGNALS:
    // A display's pictures changed; panels draw their glass again.
    void changed();

private:
    struct Screen {
        QRect geometry;
        GlassBackdrop pictures;
    };
    void load(QScreen* screen);

    DesktopPicture* m_picture;
    QHash<QString, Screen> m_screens;
    // One low-priority thread reads and blurs; the panels never wait for it.
    QThreadPool m_pool;
    // Results of an older reading arrive late and are dropped.
    int m_generation = 0;
};

} // namespace tw
