#include "desktop/PaneInk.h"

#include <QPainter>

namespace tw {

PaneInk PaneInk::of(GlassLook::Shade shade) {
    if (shade == GlassLook::Shade::Light) {
        return {QColor(0xf3, 0xf3, 0xf6), QColor(0xff, 0xff, 0xff), QColor(0x1d, 0x1d, 0x22),
                QColor(0x1d, 0x1d, 0x22, 150)};
    }
    return {QColor(0x1c, 0x1d, 0x23), QColor(0x2a, 0x2b, 0x33), QColor(0xf2, 0xf3, 0xf7),
            QColor(0xf2, 0xf3, 0xf7, 150)};
}

double PaneInk::paragraph(QPainter& painter, const QPointF& at, double width, const QString& text,
                          const QFont& font, const QColor& color) {
    painter.setFont(font);
    painter.setPen(color);
    const QRectF bounds = painter.boundingRect(QRectF(at, QSizeF(width, 10'000)),
                                               Qt::TextWordWrap | Qt::AlignLeft, text);
    painter.drawText(QRectF(at, QSizeF(width, bounds.height())), Qt::TextWordWrap | Qt::AlignLeft,
                     text);
    return bounds.height();
}

} // namespace tw
