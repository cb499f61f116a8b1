// One picture of the whole catalogue: every kind at its default size, grouped by category, on a
// desktop-like backdrop so the glass reads as glass.
#pragma once

#include <QImage>
#include <QRectF>

class QPainter;

namespace tw {

class FaceRegistry;
class TileRenderer;
struct FaceContext;

class GallerySheet {
public:
    static constexpr qreal defaultWidth = 1480;

    // `base` carries the theme, glass, time, surface flags, symbols and pixel ratio every tile
    // shares.
    static QImage render(const FaceRegistry& faces, TileRenderer& renderer, const FaceContext& base,
                         qreal width = defaultWidth);

    // A dark, colourful backdrop of the kind a desktop has behind its tiles.
    static void paintBackdrop(QPainter& painter, const QRectF& rect);
};

} // namespace tw
