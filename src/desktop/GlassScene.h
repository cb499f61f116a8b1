// Tiles standing on their real glass over a desktop picture, for the product's own pictures and
// for previews: the picture fills one display and each tile takes the frosted, clear or liquid
// look of what lies behind it, drawn by the same renderer as a panel on the desktop. Painter
// level: the caller's painter is in the display's points, scaled however it likes.
#pragma once

#include "faces/GlassBackdrop.h"
#include "faces/TileRenderer.h"

#include <QImage>
#include <QRectF>
#include <QSizeF>

class QPainter;

namespace tw {

struct FaceContext;
class FaceRegistry;
class WidgetFace;
struct WidgetInstance;

class GlassScene {
public:
    // `picture` is filled and centred on a display of `display` points, kept at `devicePixelRatio`
    // pixels a point so that the lenses are sharp in a picture drawn at that ratio.
    GlassScene(const QImage& picture, const QSizeF& display, qreal devicePixelRatio);

    const QSizeF& display() const { return m_backdrop.display; }
    // The display's picture, sharp.
    const QImage& picture() const { return m_backdrop.sharp; }

    // The picture over the whole display, origin at (0, 0).
    void paintPicture(QPainter& painter) const;
    // One tile at `tile` (display points): its shadow, the glass of `context.glass.finish` made
    // from the picture behind it, and its face, in the content colours that glass asks for.
    void paintTile(QPainter& painter, const QRectF& tile, const WidgetFace& face,
                   FaceContext context);

    // A widget of the catalogue with its top-left corner at `topLeft` (display points), drawn in
    // `base`'s theme, glass, time and pixel ratio; its rectangle, empty for a kind the catalogue
    // does not have.
    QRectF paintWidget(QPainter& painter, const QPointF& topLeft, const WidgetInstance& widget,
                       const FaceContext& base, const FaceRegistry& faces);

    // A lens whose light, weighed by its coverage, is above the middle: light text would not read
    // on it.
    static bool isBright(const QImage& lens);

private:
    GlassBackdrop m_backdrop;
    TileRenderer m_renderer;
};

} // namespace tw
