#include "faces/GenericFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "model/WidgetCategory.h"

#include <QLinearGradient>
#include <QPainter>

namespace tw {

std::optional<TimeGrain> GenericFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

void GenericFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const WidgetMetadata& meta = context.metadata;
    const QString name = meta.displayName.isEmpty() ? meta.kind : meta.displayName;
    QRectF area = rect;

    if (meta.chromeless) {
        // No glass to stand on: only the symbol, with a soft disc behind it for contrast.
        const qreal side = std::min(rect.width(), rect.height()) * 0.7;
        const QRectF disc(rect.center().x() - side / 2, rect.center().y() - side / 2, side, side);
        QColor back = context.glass.darkInk() ? QColor(255, 255, 255, 150) : QColor(0, 0, 0, 110);
        painter.setPen(Qt::NoPen);
        painter.setBrush(back);
        painter.drawEllipse(disc);
        FaceKit::drawSymbol(painter, context, meta.symbol,
                            disc.adjusted(side * 0.2, side * 0.2, -side * 0.2, -side * 0.2),
                            context.accent(), name);
        return;
    }
    if (meta.fullBleed) {
        // The content reaches the edges: a wash of the accent fills the whole tile.
        QColor top = context.accent();
        top.setAlphaF(0.38F);
        QColor bottom = context.accent();
        bottom.setAlphaF(0.08F);
        QLinearGradient wash(rect.topLeft(), rect.bottomRight());
        wash.setColorAt(0, top);
        wash.setColorAt(1, bottom);
        painter.fillRect(rect, wash);
        area = rect.adjusted(12, 12, -12, -12);
    }

    const QString category = title(widgetCategoryOf(meta.kind));
    const qreal h = area.height();
    const qreal w = area.width();
    if (w >= h * 1.8 && h < 120) {
        // Wide: the symbol in a badge on the left, the name and its group beside it.
        const qreal badge = std::min(h, 64.0);
        const QRectF b(area.left(), area.center().y() - badge / 2, badge, badge);
        painter.setPen(Qt::NoPen);
        painter.setBrush(context.elevated());
        painter.drawRoundedRect(b, badge * 0.26, badge * 0.26);
        FaceKit::drawSymbol(painter, context, meta.symbol,
                            b.adjusted(badge * 0.2, badge * 0.2, -badge * 0.2, -badge * 0.2),
                            context.accent(), name);
        const QRectF text(b.right() + 12, area.top(), area.right() - b.right() - 12, h);
        FaceKit::drawFitted(
            painter, context, QRectF(text.left(), text.center().y() - 22, text.width(), 24), name,
            QFont::DemiBold, context.primary(), Qt::AlignLeft | Qt::AlignBottom, 20);
        FaceKit::drawElided(painter, context,
                            QRectF(text.left(), text.center().y() + 3, text.width(), 18), category,
                            FaceKit::font(12), context.secondary(), Qt::AlignLeft | Qt::AlignTop);
        return;
    }
    if (context.size == WidgetSize::small || context.size == WidgetSize::tall) {
        // A tall tile has room for a symbol as wide as its column.
        const qreal side = context.size == WidgetSize::tall ? w * 0.6 : std::min(w, h) * 0.42;
        FaceKit::drawSymbol(painter, context, meta.symbol,
                            QRectF(area.left(), area.top(), side, side), context.accent(), name);
        const QRectF label(area.left(), area.bottom() - 34, w, 34);
        painter.setFont(FaceKit::font(12, QFont::DemiBold));
        painter.setPen(context.primary());
        painter.drawText(label, Qt::AlignLeft | Qt::AlignBottom | Qt::TextWordWrap, name);
        return;
    }
    // Square and big tiles: the symbol large in the middle, the name and group under it.
    const qreal side = std::min(w, h) * 0.36;
    const QRectF symbolRect(area.center().x() - side / 2, area.top() + (h - side) * 0.36, side,
                            side);
    FaceKit::drawSymbol(painter, context, meta.symbol, symbolRect, context.accent(), name);
    FaceKit::drawFitted(painter, context, QRectF(area.left(), symbolRect.bottom() + 10, w, 24),
                        name, QFont::DemiBold, context.primary(), Qt::AlignHCenter | Qt::AlignTop,
                        20);
    FaceKit::drawElided(painter, context, QRectF(area.left(), symbolRect.bottom() + 36, w, 18),
                        category, FaceKit::font(12), context.secondary(),
                        Qt::AlignHCenter | Qt::AlignTop);
}

} // namespace tw
