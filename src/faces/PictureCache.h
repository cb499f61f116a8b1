// Pictures of what faces draw again and again unchanged: large text (the raster engine caches
// glyphs only up to a modest pixel size and fills larger ones as outlines on every draw) and the
// still parts of a face, such as a dial under its hands. Each is kept at the device pixel ratio,
// with the fitted font sizes, so an unchanged time costs a copy.
#pragma once

#include <QColor>
#include <QFont>
#include <QHash>
#include <QImage>
#include <QRectF>
#include <QString>

#include <functional>

class QPainter;

namespace tw {

class PictureCache {
public:
    // Text whose glyphs are at least this many device pixels tall is drawn from pictures.
    static constexpr qreal largeText = 44;
    static constexpr qsizetype capacity = 256;

    // As QPainter::drawText(rect, flags, text) with `font` and `color`; returns the rectangle the
    // text's line took. `devicePixelRatio` is the target's.
    QRectF draw(QPainter& painter, const QRectF& rect, int flags, const QString& text,
                const QFont& font, const QColor& color, qreal devicePixelRatio);

    // What `paint` draws into `rect` (in the painter's coordinates), drawn once into a picture
    // kept under `key` and copied from then on. `paint` gets a painter whose origin is the
    // rectangle's top-left.
    void draw(QPainter& painter, const QRectF& rect, const QString& key, qreal devicePixelRatio,
              const std::function<void(QPainter&)>& paint);

    // As the keyed `draw`, keeping only the newest picture of each `slot`: for a picture that
    // changes now and then under a moving one (a face's figures over its scene), so that the old
    // ones do not pile up.
    void drawLatest(QPainter& painter, const QRectF& rect, const QString& slot, const QString& key,
                    qreal devicePixelRatio, const std::function<void(QPainter&)>& paint);

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

    qsizetype pictures() const { return m_pictures.size() + m_still.size() + m_latest.size(); }

private:
    struct Picture {
        QImage image;
        QRectF line;    // the line's box, relative to the rectangle's top-left
        QPointF origin; // where the picture's top-left goes, relative to the same
    };

    struct Latest {
        QString key;
        QImage image;
    };

    void blit(QPainter& painter, const QPointF& topLeft, const QImage& image);
    static QImage render(const QRectF& rect, qreal dpr,
                         const std::function<void(QPainter&)>& paint);

    QHash<QString, Picture> m_pictures;
    QHash<QString, QImage> m_still;
    QHash<QString, Latest> m_latest;
    QHash<QString, qreal> m_fits;
};

} // namespace tw
