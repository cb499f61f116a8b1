// One picture of the whole catalogue: every kind at its default size, grouped by category, or of
// some kinds at every size they allow, one group each; on a desktop-like backdrop so the glass
// reads as glass.
#pragma once

#include <QImage>
#include <QRectF>
#include <QStringList>

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
    // With `kinds`, those kinds (unknown ones left out) at every allowed size.
    static QImage render(const FaceRegistry& faces, TileRenderer& renderer, const FaceContext& base,
                         const QStringList& kinds = {}, qreal width = defaultWidth);

    // A dark, colourful backdrop of the kind a desktop has behind its tiles.
    static void paintBackdrop(QPainter& painter, const QRectF& rect);
};

} // namespace tw
