// Draws a tile: its shadow in the panel's margin, the frosted or clear glass, the face clipped to
// the rounded shape, and the highlight ring. Keeps the blurred shadows it has made, so a tile that
// redraws every second never blurs anything.
#pragma once

#include "faces/TileShape.h"
#include "model/Metrics.h"

#include <QColor>
#include <QHash>
#include <QImage>
#include <QRectF>

class QPainter;

namespace tw {

struct FaceContext;
class WidgetFace;

class TileRenderer {
public:
    static constexpr qreal cornerRadius = Metrics::tileCornerRadius;
    // A panel is its tile grown by this on every side: room for the shadow and the ring.
    static constexpr qreal panelMargin = 22;
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

    // The parts, for hosts that draw them apart.
    void paintShadow(QPainter& painter, const QRectF& tile, qreal devicePixelRatio);
    static void paintGlass(QPainter& painter, const QRectF& tile, const FaceContext& context);
    static void paintFace(QPainter& painter, const QRectF& tile, const WidgetFace& face,
                          const FaceContext& context);
    static void paintHighlight(QPainter& painter, const QRectF& tile, const QColor& color,
                               double opacity);

    // A picture of the whole panel (the tile and its margin) at the context's size and device
    // pixel ratio, transparent around the tile.
    QImage picture(const WidgetFace& face, const FaceContext& context, double highlight = 0);

    // How many blurred shadows are kept (one per tile size and pixel ratio).
    qsizetype cachedShadows() const { return m_shadows.size(); }

private:
    const QImage& shadow(const QSizeF& tile, qreal devicePixelRatio);

    QHash<QString, QImage> m_shadows;
};

} // namespace tw
