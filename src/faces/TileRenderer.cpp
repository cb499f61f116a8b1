#include "faces/TileRenderer.h"

#include "faces/BoxBlur.h"
#include "faces/FaceContext.h"
#include "faces/GlassBackdrop.h"
#include "faces/WidgetFace.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <vector>

namespace tw {

namespace {

constexpr qreal kShadowOffset = 5; // points downward: the light comes from above
constexpr qreal kShadowBlur = 9;   // points, the radius of the box blur
constexpr qreal kShadowAlpha = 0.42;
constexpr qsizetype kMaxShadows = 48;

// One pass of a running-sum box blur over the alpha of a premultiplied black image, along rows
// (or columns, when `vertical`). Three passes approximate a Gaussian.
QPainterPath roundedTile(const QRectF& tile) {
    QPainterPath path;
    const qreal radius =
        std::min(TileRenderer::cornerRadius, std::min(tile.width(), tile.height()) / 2);
    path.addRoundedRect(tile, radius, radius);
    return path;
}

QColor withAlpha(QColor color, qreal alpha) {
    color.setAlphaF(static_cast<float>(std::clamp(alpha, 0.0, 1.0)));
    return color;
}

QColor mixed(const QColor& a, const QColor& b, float t) {
    return QColor::fromRgbF(a.redF() + (b.redF() - a.redF()) * t,
                            a.greenF() + (b.greenF() - a.greenF()) * t,
                            a.blueF() + (b.blueF() - a.blueF()) * t);
}

} // namespace

QRectF TileRenderer::contentRect(const QSizeF& nominalTile, TileShape shape) {
    const QRectF whole(QPointF(0, 0), nominalTile);
    if (shape.bleed == TileShape::Bleed::Full || shape.chrome == TileShape::Chrome::None) {
        return whole;
    }
    return whole.adjusted(contentPadding, contentPadding, -contentPadding, -contentPadding);
}

void TileRenderer::paint(QPainter& painter, const QRectF& tile, const WidgetFace& face,
                         const FaceContext& context, double highlight) {
    if (TileShape::of(context.metadata).chrome == TileShape::Chrome::Glass) {
        paintBackground(painter, tile, context);
    }
    paintFace(painter, tile, face, context);
    if (highlight > 0) {
        paintHighlight(painter, tile, context.accent(), highlight);
    }
}

static QString sizeKey(const QSizeF& tile, qreal devicePixelRatio) {
    return QStringLiteral("%1x%2@%3")
        .arg(tile.width(), 0, 'f', 2)
        .arg(tile.height(), 0, 'f', 2)
        .arg(devicePixelRatio, 0, 'f', 2);
}

static QString colorKey(const ThemeColor& c) {
    return QStringLiteral("%1,%2,%3,%4").arg(c.red).arg(c.green).arg(c.blue).arg(c.opacity);
}

const QImage& TileRenderer::background(const QSizeF& tile, const FaceContext& context) {
    const qreal dpr = context.devicePixelRatio > 0 ? context.devicePixelRatio : 1.0;
    const QString key = sizeKey(tile, dpr) + QLatin1Char('|') + colorKey(context.theme.surface) +
                        QLatin1Char('|') + colorKey(context.theme.surfaceElevated) +
                        QStringLiteral("|%1|%2|%3")
                            .arg(static_cast<int>(context.glass.finish))
                            .arg(context.glass.strength)
                            .arg(static_cast<int>(context.glass.shade));
    auto found = m_backgrounds.constFind(key);
    if (found != m_backgrounds.constEnd()) {
        return *found;
    }
    if (m_backgrounds.size() >= kMaxShadows) {
        m_backgrounds.clear();
    }
    QImage image = shadow(tile, dpr).copy();
    image.setDevicePixelRatio(1);
    {
        // Scaled by hand: QPainter applies an image's pixel ratio only from 1 up.
        QPainter p(&image);
        p.scale(dpr, dpr);
        paintGlass(p, QRectF(QPointF(panelMargin, panelMargin), tile), context);
    }
    image.setDevicePixelRatio(dpr);
    return *m_backgrounds.insert(key, image);
}

void TileRenderer::paintBackground(QPainter& painter, const QRectF& tile,
                                   const FaceContext& context) {
    painter.drawImage(panelRect(tile).topLeft(), background(tile.size(), context));
}

const QImage& TileRenderer::shadow(const QSizeF& tile, qreal devicePixelRatio) {
    const QString key = sizeKey(tile, devicePixelRatio);
    auto found = m_shadows.constFind(key);
    if (found != m_shadows.constEnd()) {
        return *found;
    }
    if (m_shadows.size() >= kMaxShadows) {
        m_shadows.clear();
    }
    const QRectF panel =
        panelRect(QRectF(QPointF(0, 0), tile)).translated(panelMargin, panelMargin);
    const QRectF inner(QPointF(panelMargin, panelMargin), tile);
    QImage image(QSize(static_cast<int>(std::ceil(panel.width() * devicePixelRatio)),
                       static_cast<int>(std::ceil(panel.height() * devicePixelRatio))),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter p(&image);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(devicePixelRatio, devicePixelRatio);
        p.fillPath(roundedTile(inner.translated(0, kShadowOffset).adjusted(2, 2, -2, -2)),
                   withAlpha(Qt::black, kShadowAlpha));
    }
    const int radius =
        std::max(1, static_cast<int>(std::lround(kShadowBlur * devicePixelRatio / 2)));
    for (int pass = 0; pass < 3; ++pass) {
        BoxBlur::pass(image, radius, Qt::Horizontal, BoxBlur::Channels::alpha);
        BoxBlur::pass(image, radius, Qt::Vertical, BoxBlur::Channels::alpha);
    }
    {
        // The tile covers its own shadow; cutting it out keeps translucent glass honest.
        QPainter p(&image);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(devicePixelRatio, devicePixelRatio);
        p.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        p.fillPath(roundedTile(inner), Qt::black);
    }
    image.setDevicePixelRatio(devicePixelRatio);
    return *m_shadows.insert(key, image);
}

void TileRenderer::paintShadow(QPainter& painter, const QRectF& tile, qreal devicePixelRatio) {
    const QImage& image = shadow(tile.size(), devicePixelRatio);
    painter.drawImage(panelRect(tile).topLeft(), image);
}

QImage TileRenderer::panelBackground(const QSizeF& tile, const FaceContext& context,
                                     const GlassBackdrop& backdrop, bool opaqueMargin,
                                     const QImage& lens) {
    const qreal dpr = context.devicePixelRatio > 0 ? context.devicePixelRatio : 1.0;
    const QRectF inner(QPointF(panelMargin, panelMargin), tile);
    const QRectF panel = panelRect(inner);
    QImage image(QSize(static_cast<int>(std::ceil(panel.width() * dpr)),
                       static_cast<int>(std::ceil(panel.height() * dpr))),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const bool glass = TileShape::of(context.metadata).chrome == TileShape::Chrome::Glass;
    QPainter p(&image);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    p.setRenderHint(QPainter::Antialiasing);
    if (glass) {
        QImage shade = shadow(tile, dpr);
        shade.setDevicePixelRatio(1);
        if (opaqueMargin) {
            p.save();
            p.scale(dpr, dpr);
            p.drawImage(panel, backdrop.sharp, backdrop.sourceIn(backdrop.sharp, backdrop.panel));
            p.restore();
        }
        p.drawImage(QPointF(0, 0), shade);
    }
    p.scale(dpr, dpr);
    if (!glass) {
        if (opaqueMargin) {
            p.drawImage(panel, backdrop.sharp, backdrop.sourceIn(backdrop.sharp, backdrop.panel));
        }
        image.setDevicePixelRatio(dpr);
        return image;
    }
    if (context.glass.finish == GlassLook::Finish::Liquid && !lens.isNull()) {
        p.drawImage(inner, lens);
        p.end();
        image.setDevicePixelRatio(dpr);
        return image;
    }
    const QImage& blur =
        context.glass.finish == GlassLook::Finish::Clear ? backdrop.clear : backdrop.frosted;
    const QRectF behind =
        backdrop.panel.adjusted(panelMargin, panelMargin, -panelMargin, -panelMargin);
    p.save();
    p.setClipPath(roundedTile(inner));
    p.drawImage(inner, blur, backdrop.sourceIn(blur, behind));
    p.restore();
    paintGlass(p, inner, context, true);
    p.end();
    image.setDevicePixelRatio(dpr);
    return image;
}

void TileRenderer::paintGlass(QPainter& painter, const QRectF& tile, const FaceContext& context,
                              bool overBackdrop) {
    const bool light = context.glass.shade == GlassLook::Shade::Light;
    const bool clear = context.glass.finish == GlassLook::Finish::Clear;
    const double strength = std::clamp(context.glass.strength, 0.0, 1.0);
    const QColor surface = FaceContext::color(context.theme.surface);
    const qreal surfaceOpacity = context.theme.surface.opacity;

    // Strength is how much of the desktop the glass lets through; clear glass lets through most.
    QColor base;
    qreal alpha = 0;
    if (light) {
        base = mixed(QColor(0xF5, 0xF6, 0xFA), surface, 0.06F);
        alpha = overBackdrop ? (clear ? 0.3 - 0.16 * strength : 0.6 - 0.3 * strength)
                             : (clear ? 0.42 - 0.22 * strength : 0.9 - 0.3 * strength);
    } else {
        base = surface;
        alpha = surfaceOpacity * (overBackdrop
                                      ? (clear ? 0.3 - 0.2 * strength : 0.6 - 0.32 * strength)
                                      : (clear ? 0.46 - 0.26 * strength : 1.0 - 0.34 * strength));
    }

    const QPainterPath shape = roundedTile(tile);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shape, withAlpha(base, alpha));

    // A sheen from the top: the frost of the glass catching light.
    const QColor sheenColor =
        light ? QColor(Qt::white) : FaceContext::color(context.theme.surfaceElevated);
    const qreal sheenAlpha =
        light ? 0.55
              : std::max<qreal>(context.theme.surfaceElevated.opacity, 0.04) * (clear ? 1.6 : 1.2);
    QLinearGradient sheen(tile.topLeft(), clear ? tile.bottomRight() : tile.bottomLeft());
    sheen.setColorAt(0, withAlpha(sheenColor, sheenAlpha));
    sheen.setColorAt(clear ? 0.45 : 0.6, withAlpha(sheenColor, 0));
    painter.fillPath(shape, sheen);

    // The rim: bright along the top edge, fading towards the bottom.
    const qreal rimWidth = 1.0;
    const QRectF rimRect = tile.adjusted(rimWidth / 2, rimWidth / 2, -rimWidth / 2, -rimWidth / 2);
    QLinearGradient rim(tile.topLeft(), tile.bottomLeft());
    rim.setColorAt(0, withAlpha(Qt::white, light ? 0.75 : (clear ? 0.32 : 0.2)));
    rim.setColorAt(1,
                   light ? withAlpha(Qt::black, 0.08) : withAlpha(Qt::white, clear ? 0.1 : 0.05));
    painter.setPen(QPen(QBrush(rim), rimWidth));
    painter.setBrush(Qt::NoBrush);
    const qreal radius = std::min(cornerRadius, std::min(tile.width(), tile.height()) / 2);
    painter.drawRoundedRect(rimRect, radius - rimWidth / 2, radius - rimWidth / 2);
    painter.restore();
}

void TileRenderer::paintFace(QPainter& painter, const QRectF& tile, const WidgetFace& face,
                             const FaceContext& context) {
    const TileShape shape = TileShape::of(context.metadata);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // Padded faces keep to their padding by construction (and by test); only content that
    // reaches the edges needs the costly rounded clip.
    if (shape.chrome == TileShape::Chrome::Glass && shape.bleed == TileShape::Bleed::Full) {
        painter.setClipPath(roundedTile(tile), Qt::IntersectClip);
    }
    painter.translate(tile.topLeft());
    const double scale = context.scale > 0 ? context.scale : 1.0;
    painter.scale(scale, scale);
    const QRectF content = contentRect(tile.size() / scale, shape).marginsRemoved(context.reserved);
    if (context.pictures != nullptr) {
        face.paint(painter, content, context);
    } else {
        FaceContext withCache = context;
        withCache.pictures = &m_text;
        face.paint(painter, content, withCache);
    }
    painter.restore();
}

WidgetFace::Spot TileRenderer::spotAt(const QRectF& tile, QPointF point, const WidgetFace& face,
                                      const FaceContext& context) {
    const double scale = context.scale > 0 ? context.scale : 1.0;
    const QRectF content = contentRect(tile.size() / scale, TileShape::of(context.metadata))
                               .marginsRemoved(context.reserved);
    return face.spotAt(content, (point - tile.topLeft()) / scale, context);
}

QRectF TileRenderer::changedRect(const QRectF& tile, const WidgetFace& face,
                                 const FaceContext& context, const QDateTime& before,
                                 const QDateTime& after) {
    const double scale = context.scale > 0 ? context.scale : 1.0;
    const QRectF content = contentRect(tile.size() / scale, TileShape::of(context.metadata))
                               .marginsRemoved(context.reserved);
    FaceContext withCache = context;
    if (withCache.pictures == nullptr) {
        withCache.pictures = &m_text;
    }
    const QRectF changed = face.changedRect(content, withCache, before, after);
    if (changed.contains(content)) {
        return tile;
    }
    return QRectF(tile.topLeft() + changed.topLeft() * scale, changed.size() * scale) & tile;
}

void TileRenderer::paintHighlight(QPainter& painter, const QRectF& tile, const QColor& color,
                                  double opacity) {
    const double o = std::clamp(opacity, 0.0, 1.0);
    if (o <= 0) {
        return;
    }
    constexpr qreal gap = 4;
    constexpr qreal width = 3;
    const QRectF ring =
        tile.adjusted(-gap - width / 2, -gap - width / 2, gap + width / 2, gap + width / 2);
    const qreal radius = cornerRadius + gap + width / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(withAlpha(color, 0.28 * o), width * 3));
    painter.drawRoundedRect(ring, radius, radius);
    painter.setPen(QPen(withAlpha(color, o), width));
    painter.drawRoundedRect(ring, radius, radius);
    painter.restore();
}

QImage TileRenderer::picture(const WidgetFace& face, const FaceContext& context, double highlight) {
    const qreal dpr = context.devicePixelRatio > 0 ? context.devicePixelRatio : 1.0;
    const QRectF tile(QPointF(panelMargin, panelMargin), context.points);
    QImage image(
        QSize(static_cast<int>(std::ceil((context.points.width() + 2 * panelMargin) * dpr)),
              static_cast<int>(std::ceil((context.points.height() + 2 * panelMargin) * dpr))),
        QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        // Scaled by hand: QPainter applies an image's pixel ratio only from 1 up.
        QPainter painter(&image);
        painter.scale(dpr, dpr);
        paint(painter, tile, face, context, highlight);
    }
    image.setDevicePixelRatio(dpr);
    return image;
}

} // namespace tw
