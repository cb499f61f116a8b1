// Drawing the launchers share: an application's icon from its picture file (read once per file
// and size), else a tile of a steady colour with a symbol or the name's first letter; and the
// grid that lays a number of icons out in a rectangle.
#pragma once

#include <QList>
#include <QRectF>
#include <QString>

class QPainter;

namespace tw {

struct FaceContext;

namespace LaunchKit {

struct Icon {
    // A picture file; empty for none.
    QString file;
    // Drawn on the coloured tile where there is no picture; empty: the name's first letter.
    QString symbol;
    QString name;
    // Faint: chosen, but not there any more.
    bool faint = false;
};

void drawIcon(QPainter& painter, const FaceContext& context, const QRectF& rect, const Icon& icon);

// `count` cells in rows filling `area`, each with a square icon and, where there is room, a
// label under it: the columns chosen so that the icons are as large as they can be, up to
// `largest` points. Fewer cells than `count` when the icons would be smaller than `smallest`.
struct Grid {
    QList<QRectF> icons;
    // Empty rectangles where there is no room for labels.
    QList<QRectF> labels;
    qreal labelSize = 0;
};
Grid grid(const QRectF& area, int count, qreal smallest, qreal largest);

} // namespace LaunchKit

} // namespace tw
