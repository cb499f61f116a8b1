// Whether a face drawn on its own keeps to the padded inside of its tile.
#pragma once

#include "PaintedBounds.h"
#include "faces/FaceContext.h"
#include "faces/TileRenderer.h"
#include "faces/WidgetFace.h"

#include <QImage>
#include <QPainter>
#include <QString>

namespace tw::test {

// Empty when `face` paints something and nothing past its tile's padded inside (a pixel of
// anti-aliasing allowed); otherwise what went wrong, for a test's message.
inline QString spillOf(const WidgetFace& face, const FaceContext& context) {
    constexpr int room = 40; // all round, to catch anything that spills
    const QRectF tile(QPointF(room, room), context.points);
    QImage image(context.points.toSize() + QSize(2 * room, 2 * room),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        TileRenderer renderer;
        QPainter painter(&image);
        renderer.paintFace(painter, tile, face, context);
    }
    const QRect painted = paintedBounds(image);
    const QRect limit = TileRenderer::contentRect(tile.size(), TileShape::of(context.metadata))
                            .translated(room, room)
                            .toAlignedRect()
                            .adjusted(-1, -1, 1, 1);
    if (painted.isEmpty()) {
        return QStringLiteral("nothing painted");
    }
    if (!limit.contains(painted)) {
        return QStringLiteral("painted %1,%2 %3x%4")
            .arg(painted.x())
            .arg(painted.y())
            .arg(painted.width())
            .arg(painted.height());
    }
    return {};
}

} // namespace tw::test
