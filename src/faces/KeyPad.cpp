#include "faces/KeyPad.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"

#include <QPainter>

#include <cmath>

namespace tw {

KeyPad::Key KeyPad::key(const char* label, const char* command, Key::Style style) {
    return {.label = QString::fromUtf8(label), .command = QLatin1String(command), .style = style};
}

QList<QRectF> KeyPad::layout(const QRectF& rect, int columns, qsizetype count) {
    QList<QRectF> out;
    if (columns < 1 || count < 1) {
        return out;
    }
    const qsizetype rows = (count + columns - 1) / columns;
    // The gap grows with the pad, so small pads keep their keys and large ones breathe.
    const qreal gap = std::clamp(std::min(rect.width(), rect.height()) * 0.035, 2.0, 8.0);
    const qreal w = (rect.width() - gap * (columns - 1)) / columns;
    const qreal h = (rect.height() - gap * static_cast<qreal>(rows - 1)) / static_cast<qreal>(rows);
    for (qsizetype i = 0; i < count; ++i) {
        const auto col = static_cast<qreal>(i % columns);
        const auto row = static_cast<qreal>(i / columns);
        out.append(QRectF(rect.left() + col * (w + gap), rect.top() + row * (h + gap), w, h));
    }
    return out;
}

void KeyPad::draw(QPainter& painter, const FaceContext& context, const QRectF& rect,
                  const QList<Key>& keys, int columns) {
    const QList<QRectF> places = layout(rect, columns, keys.size());
    if (places.isEmpty()) {
        return;
    }
    const qreal height = places.front().height();
    const qreal radius = std::min(height, places.front().width()) * 0.3;
    // One size for every label of a style, so that the digits line up.
    const qreal digitSize = std::min(height * 0.56, places.front().width() * 0.5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (qsizetype i = 0; i < keys.size(); ++i) {
        const Key& key = keys[i];
        QColor fill = context.elevated();
        QColor ink = context.primary();
        QFont::Weight weight = QFont::Medium;
        switch (key.style) {
        case Key::Style::digit:
            break;
        case Key::Style::function:
            fill = context.primary();
            fill.setAlphaF(0.08F);
            ink = context.secondary();
            break;
        case Key::Style::operation:
            fill = context.accent();
            fill.setAlphaF(0.2F);
            ink = context.accent();
            weight = QFont::DemiBold;
            break;
        case Key::Style::primary:
            fill = context.accent();
            ink = Qt::white;
            weight = QFont::DemiBold;
            break;
        }
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(places[i], radius, radius);
        const qreal size =
            FaceKit::fittingPixelSize(key.label, places[i].size() * 0.8, weight,
                                      key.label.size() > 1 ? digitSize * 0.8 : digitSize);
        FaceKit::drawText(painter, context, places[i], Qt::AlignCenter, key.label,
                          FaceKit::font(size, weight), ink);
    }
    painter.restore();
}

const KeyPad::Key* KeyPad::keyAt(const QRectF& rect, const QList<Key>& keys, int columns,
                                 QPointF point) {
    const QList<QRectF> places = layout(rect, columns, keys.size());
    for (qsizetype i = 0; i < places.size(); ++i) {
        // Half the gap counts as the key's, so a press between keys still lands on one.
        if (places[i].adjusted(-3, -3, 3, 3).contains(point)) {
            return &keys[i];
        }
    }
    return nullptr;
}

} // namespace tw
