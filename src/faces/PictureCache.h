// Pictures of large text. The raster engine caches glyphs only up to a modest pixel size and fills
// larger ones as outlines on every draw, which makes a big clock cost far more than its tick
// allows; this keeps each large text as a picture at the device pixel ratio, and remembers fitted
// font sizes, so an unchanged time costs a copy.
#pragma once

#include <QColor>
#include <QFont>
#include <QHash>
#include <QImage>
#include <QRectF>
#include <QString>

class QPainter;

namespace tw {

class TextCache {
public:
    // Text whose glyphs are at least this many device pixels tall is drawn from pictures.
    static constexpr qreal largeText = 44;
    static constexpr qsizetype capacity = 256;

    // As QPainter::drawText(rect, flags, text) with `font` and `color`; returns the rectangle the
    // text's line took. `devicePixelRatio` is the target's.
    QRectF draw(QPainter& painter, const QRectF& rect, int flags, const QString& text,
                const QFont& font, const QColor& color, qreal devicePixelRatio);

    // A fitted pixel size remembered for the same text, box, weight and cap; `compute` otherwise.
    template <typename Compute>
    qreal fittedSize(const QString& key, Compute compute) {
        const auto found = m_fits.constFind(key);
        if (found != m_fits.constEnd()) {
            return *found;
        }
        if (m_fits.size() >= capacity) {
            m_fits.clear();
        }
        return *m_fits.insert(key, compute());
    }

    qsizetype pictures() const { return m_pictures.size(); }

private:
    struct Picture {
        QImage image;
        QRectF line;    // the line's box, relative to the rectangle's top-left
        QPointF origin; // where the picture's top-left goes, relative to the same
    };

    QHash<QString, Picture> m_pictures;
    QHash<QString, qreal> m_fits;
};

} // namespace tw
