#include "faces/LaunchKit.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"

#include <QImageReader>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace tw::LaunchKit {

namespace {

// A steady colour per name, the same in every run (qHash is seeded per process); golden-ratio
// steps spread neighbours around the wheel.
QColor tileColor(const QString& name) {
    quint32 hash = 2166136261U;
    for (const QChar c : name) {
        hash = (hash ^ c.unicode()) * 16777619U;
    }
    const double hue = std::fmod(static_cast<double>(hash % 1000) * 0.618034, 1.0);
    return QColor::fromHsvF(static_cast<float>(hue), 0.5F, 0.82F);
}

void drawTile(QPainter& painter, const FaceContext& context, const QRectF& rect, const Icon& icon) {
    QPainterPath shape;
    shape.addRoundedRect(rect, rect.width() * 0.24, rect.width() * 0.24);
    QLinearGradient fill(rect.topLeft(), rect.bottomLeft());
    const QColor base = tileColor(icon.name);
    fill.setColorAt(0, base.lighter(112));
    fill.setColorAt(1, base.darker(112));
    painter.fillPath(shape, fill);
    if (!icon.symbol.isEmpty()) {
        const qreal inset = rect.width() * 0.22;
        FaceKit::drawSymbol(painter, context, icon.symbol,
                            rect.adjusted(inset, inset, -inset, -inset), Qt::white, icon.name);
        return;
    }
    painter.setPen(Qt::white);
    painter.setFont(FaceKit::font(rect.height() * 0.52, QFont::Bold));
    painter.drawText(rect, Qt::AlignCenter, icon.name.left(1).toUpper());
}

} // namespace

void drawIcon(QPainter& painter, const FaceContext& context, const QRectF& rect, const Icon& icon) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (icon.faint) {
        painter.setOpacity(0.35);
    }
    if (icon.file.isEmpty() || context.pictures == nullptr) {
        drawTile(painter, context, rect, icon);
        painter.restore();
        return;
    }
    const qreal ratio = context.devicePixelRatio * context.scale;
    const QSize pixels = (rect.size() * ratio).toSize();
    context.pictures->draw(painter, rect,
                           QStringLiteral("launch:%1:%2x%3:%4")
                               .arg(icon.file)
                               .arg(pixels.width())
                               .arg(pixels.height())
                               .arg(icon.name),
                           ratio, [&](QPainter& inside) {
                               // Scaled while decoding: an icon file may be a large picture; one
                               // that is no picture keeps the coloured tile.
                               QImageReader reader(icon.file);
                               reader.setScaledSize(pixels);
                               const QImage image = reader.read();
                               const QRectF at(QPointF(0, 0), rect.size());
                               if (image.isNull()) {
                                   drawTile(inside, context, at, icon);
                               } else {
                                   inside.setRenderHint(QPainter::SmoothPixmapTransform);
                                   inside.drawImage(at, image);
                               }
                           });
    painter.restore();
}

Grid grid(const QRectF& area, int count, qreal smallest, qreal largest) {
    Grid best;
    qreal bestIcon = -1;
    qreal bestScore = -1e9;
    for (int shown = std::max(count, 1); shown >= 1; --shown) {
        for (int columns = 1; columns <= shown; ++columns) {
            const int rows = (shown + columns - 1) / columns;
            const qreal cellW = area.width() / columns;
            const qreal cellH = area.height() / rows;
            const qreal labelSize = std::clamp(cellW * 0.16, 9.0, 12.0);
            const bool labelled = cellW >= 52 && cellH >= 50;
            const qreal labelH = labelled ? labelSize + 6 : 0;
            const qreal icon =
                std::min({cellW * 0.72, (cellH - labelH) * (labelled ? 0.86 : 0.8), largest});
            // Labels win a tie: a little smaller with names reads better than bare icons; so do
            // full rows, which read as one block.
            const qreal score = icon + (labelled ? 2 : 0) - (rows * columns - shown) * 4;
            if (score > bestScore) {
                bestScore = score;
                bestIcon = icon;
                best = {};
                best.labelSize = labelled ? labelSize : 0;
                for (int i = 0; i < shown; ++i) {
                    const int row = i / columns;
                    const int column = i % columns;
                    // A short last row is centred.
                    const int inRow = row == rows - 1 ? shown - row * columns : columns;
                    const qreal left =
                        area.left() + (area.width() - inRow * cellW) / 2 + column * cellW;
                    const qreal top = area.top() + row * cellH;
                    const qreal block = icon + labelH;
                    const qreal y = top + (cellH - block) / 2;
                    best.icons.append(QRectF(left + (cellW - icon) / 2, y, icon, icon));
                    best.labels.append(labelled ? QRectF(left + 2, y + icon + 4, cellW - 4, labelH)
                                                : QRectF());
                }
            }
        }
        if (bestIcon >= smallest) {
            break;
        }
    }
    return best;
}

} // namespace tw::LaunchKit
