#include "config/BoardPicture.h"

#include "text/L.h"

#include <QFont>
#include <QPainter>
#include <QRectF>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

// A board's extent comes from a file; the picture stays within what a screen could show.
constexpr double maximumSide = 8192;

} // namespace

WidgetInstance BoardPicture::instanceOf(const Board::Item& item) {
    WidgetInstance instance;
    instance.kind = item.kind;
    instance.size = item.size;
    instance.settings = item.settings;
    return instance;
}

QSizeF BoardPicture::size(const Board& board) {
    double width = 0;
    double height = 0;
    for (const Board::Item& item : board.items) {
        const QSizeF tile = instanceOf(item).pixelSize();
        width = std::max(width, item.dx + tile.width());
        height = std::max(height, item.dy + tile.height());
    }
    return {std::clamp(width + 2 * margin, 480.0, maximumSide),
            std::clamp(height + 2 * margin, 240.0, maximumSide) + footer};
}

QImage BoardPicture::render(const Board& board, const PaintTile& paintTile, const QImage& backdrop,
                            double pixelsPerPoint) {
    const QSizeF points = size(board);
    QImage picture((points * pixelsPerPoint).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(pixelsPerPoint);
    picture.fill(QColor(18, 22, 30));
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF scene(0, 0, points.width(), points.height() - footer);
    if (!backdrop.isNull()) {
        const QSizeF drawn =
            QSizeF(backdrop.size()).scaled(scene.size(), Qt::KeepAspectRatioByExpanding);
        painter.save();
        painter.setClipRect(scene);
        painter.drawImage(QRectF(QPointF((scene.width() - drawn.width()) / 2,
                                         (scene.height() - drawn.height()) / 2),
                                 drawn),
                          backdrop);
        painter.restore();
    }
    // Items outside the picture are left out, not squeezed in.
    for (const Board::Item& item : board.items) {
        const WidgetInstance instance = instanceOf(item);
        const QRectF tile(QPointF(margin + item.dx, margin + item.dy), instance.pixelSize());
        if (scene.contains(tile)) {
            paintTile(painter, tile, instance);
        }
    }
    const QRectF band(0, scene.height(), points.width(), footer);
    painter.fillRect(band, QColor(12, 14, 20));
    QFont title = painter.font();
    title.setPointSizeF(17);
    title.setBold(true);
    painter.setFont(title);
    painter.setPen(Qt::white);
    const QString name = board.name.trimmed().isEmpty()
                             ? L("share.picture.untitled", QStringLiteral("My desktop"))
                             : board.name.trimmed();
    painter.drawText(band.adjusted(margin / 2, 0, -margin / 2, 0), Qt::AlignVCenter | Qt::AlignLeft,
                     name);
    QFont small = painter.font();
    small.setPointSizeF(12);
    small.setBold(false);
    painter.setFont(small);
    painter.setPen(QColor(255, 255, 255, 170));
    painter.drawText(band.adjusted(margin / 2, 0, -margin / 2, 0),
                     Qt::AlignVCenter | Qt::AlignRight,
                     L("share.picture.madeWith", QStringLiteral("made with Tarnwick")));
    return picture;
}

} // namespace tw
