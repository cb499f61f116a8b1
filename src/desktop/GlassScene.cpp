#include "desktop/GlassScene.h"

#include "desktop/WallpaperBackdrop.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/LiquidGlassRenderer.h"
#include "model/WidgetRegistry.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tw {

GlassScene::GlassScene(const QImage& picture, const QSizeF& display, qreal devicePixelRatio) {
    const qreal ratio = devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    const QSize pixels(std::max(1, int(std::ceil(display.width() * ratio))),
                       std::max(1, int(std::ceil(display.height() * ratio))));
    m_backdrop.sharp = WallpaperBackdrop::fitted(picture, DesktopPicture::Fill::zoom, pixels);
    if (!m_backdrop.sharp.isNull()) {
        // The desktop blurs at one pixel a point; a denser picture is reduced more for the same
        // frost.
        const int scale = std::max(1, int(std::lround(ratio)));
        m_backdrop.frosted = WallpaperBackdrop::blurred(
            m_backdrop.sharp, WallpaperBackdrop::frostedReduction * scale, 3);
        m_backdrop.clear = WallpaperBackdrop::blurred(m_backdrop.sharp,
                                                      WallpaperBackdrop::clearReduction * scale, 2);
    }
    m_backdrop.display = display;
    m_backdrop.identity = QStringLiteral("scene|%1").arg(picture.cacheKey());
}

void GlassScene::paintPicture(QPainter& painter) const {
    if (m_backdrop.sharp.isNull()) {
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(QPointF(0, 0), m_backdrop.display), m_backdrop.sharp);
    painter.restore();
}

void GlassScene::paintTile(QPainter& painter, const QRectF& tile, const WidgetFace& face,
                           FaceContext context) {
    if (m_backdrop.sharp.isNull()) {
        m_renderer.paint(painter, tile, face, context);
        return;
    }
    GlassBackdrop backdrop = m_backdrop;
    backdrop.panel = TileRenderer::panelRect(tile);
    QImage lens;
    if (context.glass.finish == GlassLook::Finish::Liquid) {
        const LiquidGlassParams params{
            .size = tile.size(),
            .scale = context.devicePixelRatio > 0 ? context.devicePixelRatio : 1.0,
            .cornerRadius = TileRenderer::cornerRadius * context.scale,
            .frost = std::clamp(context.glass.strength, 0.0, 1.0),
            .lightGlass = context.glass.shade == GlassLook::Shade::Light,
            .focused = false,
        };
        lens = LiquidGlassRenderer::render(m_backdrop.sharp,
                                           m_backdrop.sourceIn(m_backdrop.sharp, tile), params);
        context.glass.brightBehind = !lens.isNull() && isBright(lens);
    }
    const QImage background =
        m_renderer.panelBackground(tile.size(), context, backdrop, false, lens);
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(backdrop.panel, background);
    painter.restore();
    m_renderer.paintFace(painter, tile, face, context);
}

QRectF GlassScene::paintWidget(QPainter& painter, const QPointF& topLeft,
                               const WidgetInstance& widget, const FaceContext& base,
                               const FaceRegistry& faces) {
    const std::optional<WidgetDefinition> definition =
        WidgetRegistry::builtInDefinition(widget.kind);
    if (!definition) {
        return {};
    }
    const FaceContext context = base.sizedFor(definition->metadata, widget);
    const QRectF tile(topLeft, context.points);
    paintTile(painter, tile, faces.face(widget.kind), context);
    return tile;
}

bool GlassScene::isBright(const QImage& lens) {
    const QImage small = lens.scaled(8, 8, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                             .convertToFormat(QImage::Format_ARGB32);
    double light = 0;
    double cover = 0;
    for (int y = 0; y < small.height(); ++y) {
        for (int x = 0; x < small.width(); ++x) {
            const QRgb pixel = small.pixel(x, y);
            light += qGray(pixel) * qAlpha(pixel) / 255.0;
            cover += qAlpha(pixel) / 255.0;
        }
    }
    return cover > 0 && light / cover > 118;
}

} // namespace tw
