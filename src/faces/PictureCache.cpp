#include "faces/PictureCache.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace tw {

QRectF PictureCache::draw(QPainter& painter, const QRectF& rect, int flags, const QString& text,
                          const QFont& font, const QColor& color, qreal devicePixelRatio) {
    const qreal dpr = devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    if (text.isEmpty() || font.pixelSize() * dpr < largeText) {
        painter.setFont(font);
        painter.setPen(color);
        QRectF used;
        painter.drawText(rect, flags, text, &used);
        return used;
    }
    const QString key = text + QLatin1Char('\x1f') + font.key() + QLatin1Char('\x1f') +
                        QString::number(color.rgba(), 16) + QLatin1Char('\x1f') +
                        QString::number(rect.width()) + QLatin1Char('x') +
                        QString::number(rect.height()) + QLatin1Char('\x1f') +
                        QString::number(flags) + QLatin1Char('\x1f') + QString::number(dpr);
    auto found = m_pictures.constFind(key);
    if (found == m_pictures.constEnd()) {
        if (m_pictures.size() >= capacity) {
            m_pictures.clear();
        }
        const QRectF box(QPointF(0, 0), rect.size());
        const QRectF line = QFontMetricsF(font).boundingRect(box, flags, text);
        // Glyphs may overhang their line box a little on every side.
        const qreal pad = std::ceil(font.pixelSize() * 0.2);
        const QRectF area = line.adjusted(-pad, -pad, pad, pad);
        const QPointF origin(std::floor(area.left() * dpr) / dpr,
                             std::floor(area.top() * dpr) / dpr);
        QImage image(QSize(static_cast<int>(std::ceil((area.right() - origin.x()) * dpr)),
                           static_cast<int>(std::ceil((area.bottom() - origin.y()) * dpr))),
                     QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        {
            // Scaled by hand: QPainter applies an image's pixel ratio only from 1 up.
            QPainter p(&image);
            p.setRenderHint(QPainter::TextAntialiasing);
            p.scale(dpr, dpr);
            p.translate(-origin);
            p.setFont(font);
            p.setPen(color);
            p.drawText(box, flags, text);
        }
        image.setDevicePixelRatio(dpr);
        found = m_pictures.insert(key, Picture{image, line, origin});
    }
    blit(painter, rect.topLeft() + found->origin, found->image);
    return found->line.translated(rect.topLeft());
}

void PictureCache::draw(QPainter& painter, const QRectF& rect, const QString& key,
                        qreal devicePixelRatio, const std::function<void(QPainter&)>& paint) {
    const qreal dpr = devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    const QString fullKey =
        key + QStringLiteral("|%1x%2@%3").arg(rect.width()).arg(rect.height()).arg(dpr);
    auto found = m_still.constFind(fullKey);
    if (found == m_still.constEnd()) {
        QImage image = render(rect, dpr, paint);
        if (m_still.size() >= capacity) {
            m_still.clear();
        }
        found = m_still.insert(fullKey, image);
    }
    blit(painter, rect.topLeft(), *found);
}

void PictureCache::drawLatest(QPainter& painter, const QRectF& rect, const QString& slot,
                              const QString& key, qreal devicePixelRatio,
                              const std::function<void(QPainter&)>& paint) {
    const qreal dpr = devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    const QString fullKey =
        key + QStringLiteral("|%1x%2@%3").arg(rect.width()).arg(rect.height()).arg(dpr);
    auto found = m_latest.constFind(slot);
    if (found == m_latest.constEnd() || found->key != fullKey) {
        // Drawn before it is stored: the painting may use this cache's other pictures.
        QImage image = render(rect, dpr, paint);
        if (m_latest.size() >= capacity) {
            m_latest.clear();
        }
        found = m_latest.insert(slot, Latest{fullKey, image});
    }
    blit(painter, rect.topLeft(), found->image);
}

QImage PictureCache::render(const QRectF& rect, qreal dpr,
                            const std::function<void(QPainter&)>& paint) {
    QImage image(QSize(static_cast<int>(std::ceil(rect.width() * dpr)),
                       static_cast<int>(std::ceil(rect.height() * dpr))),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter p(&image);
        p.setRenderHint(QPainter::Antialiasing);
        p.setRenderHint(QPainter::TextAntialiasing);
        p.scale(dpr, dpr);
        paint(p);
    }
    image.setDevicePixelRatio(dpr);
    return image;
}

void PictureCache::blit(QPainter& painter, const QPointF& topLeft, const QImage& image) {
    // Whole device pixels, so the picture is copied, not resampled.
    const QTransform& world = painter.deviceTransform();
    QPointF at = world.map(topLeft);
    at = QPointF(std::round(at.x()), std::round(at.y()));
    painter.drawImage(world.inverted().map(at), image);
}

} // namespace tw
