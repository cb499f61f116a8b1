// Draws a tile: its shadow in the panel's margin, the frosted or clear glass, the face (clipped to
// the rounded shape where it bleeds to the edge), and the highlight ring. Keeps the shadows and
// glass it has made, so a tile that redraws every second only copies its background and draws
// its face: nothing is blurred or filled twice.
#pragma once

#include "faces/PictureCache.h"
#include "faces/TileShape.h"
#include "faces/WidgetFace.h"
#include "model/Metrics.h"

#include <QColor>
#include <QDateTime>
#include <QHash>
#include <QImage>
#include <QRectF>

class QPainter;

namespace tw {

struct FaceContext;
struct GlassBackdrop;

class TileRenderer {
public:
    static constexpr qreal cornerRadius = Metrics::tileCornerRadius;
    static constexpr qreal panelMargin = Metrics::panelMargin;
    // Inner padding of a padded tile, in points at scale 1.
    static constexpr qreal contentPadding = 12;

    static QRectF panelRect(const QRectF& tile) {
        return tile.adjusted(-panelMargin, -panelMargin, panelMargin, panelMargin);
    }
    // Where the face draws, in the tile's points at scale 1 (origin at the tile's corner).
    static QRectF contentRect(const QSizeF& nominalTile, TileShape shape);

    // Everything at once, shaped by the context's metadata (chromeless, full-bleed); `tile` is in
    // the painter's coordinates (points, tile scale included), `highlight` the ring's opacity from
    // 0 (none) to 1.
    void paint(QPainter& painter, const QRectF& tile, const WidgetFace& face,
               const FaceContext& context, double highlight = 0);

    // The parts, for hosts that draw them apart. paintBackground is shadow and glass from the
    // cache.
    void paintBackground(QPainter& painter, const QRectF& tile, const FaceContext& context);
    void paintShadow(QPainter& painter, const QRectF& tile, qreal devicePixelRatio);
    // Over the desktop's picture (`overBackdrop`) the tint is thinner: the blur does the frosting.
    static void paintGlass(QPainter& painter, const QRectF& tile, const FaceContext& context,
                           bool overBackdrop = false);
    // The whole panel's background over the desktop's picture, at the context's pixel ratio: the
    // picture itself in the margin when nothing blends the window with the desktop
    // (`opaqueMargin`), the shadow, the picture behind the tile blurred as the glass has it, and
    // the glass's tint, or the liquid glass's `lens` in their place when there is one. Made once
    // per place, size and look; the face draws over it.
    QImage panelBackground(const QSizeF& tile, const FaceContext& context,
                           const GlassBackdrop& backdrop, bool opaqueMargin,
                           const QImage& lens = {});
    // Large text comes from the context's text cache, or from the renderer's own.
    void paintFace(QPainter& painter, const QRectF& tile, const WidgetFace& face,
                   const FaceContext& context);
    static void paintHighlight(QPainter& painter, const QRectF& tile, const QColor& color,
                               double opacity);

    // What the face offers at `point`, both in the coordinates `tile` is given in, mapped as
    // paintFace places the face.
    static WidgetFace::Spot spotAt(const QRectF& tile, QPointF point, const WidgetFace& face,
                                   const FaceContext& context);

    // The part of `tile` (in the painter's coordinates of `paint`) that may look different at
    // `after` than at `before`: the face's changed part placed as paintFace places it, or the
    // whole tile when that is all the face can say.
    QRectF changedRect(const QRectF& tile, const WidgetFace& face, const FaceContext& context,
                       const QDateTime& before, const QDateTime& after);

    // A picture of the whole panel (the tile and its margin) at the context's size and device
    // pixel ratio, transparent around the tile.
    QImage picture(const WidgetFace& face, const FaceContext& context, double highlight = 0);

    // How many blurred shadows are kept (one per tile size and pixel ratio).
    qsizetype cachedShadows() const { return m_shadows.size(); }
    // How many shadow-and-glass backgrounds are kept (one per size, ratio, theme and glass).
    qsizetype cachedBackgrounds() const { return m_backgrounds.size(); }

private:
    const QImage& shadow(const QSizeF& tile, qreal devicePixelRatio);
    const QImage& background(const QSizeF& tile, const FaceContext& context);

    QHash<QString, QImage> m_shadows;
    QHash<QString, QImage> m_backgrounds;
    PictureCache m_text;
};

} // namespace tw
