#include "faces/GallerySheet.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/FaceRegistry.h"
#include "faces/TileRenderer.h"
#include "model/WidgetRegistry.h"

#include <QPainter>
#include <QRadialGradient>

#include <cmath>

namespace tw {

namespace {

constexpr qreal kMargin = 40;
constexpr qreal kGap = 8; // between panels, which already carry 22 points of margin each
constexpr qreal kLabel = 20;
constexpr qreal kHeading = 44;

struct Placed {
    WidgetDefinition definition;
    WidgetSize size;
    // Under the tile: its kind and size, or only its size under a heading that names the kind.
    QString caption;
    QRectF tile;
};

struct Section {
    QString title;
    QString symbol;
    QRectF heading;
    QList<Placed> tiles;
};

// What each section shows, before it is placed.
QList<Section> sectionsOf(const QStringList& kinds) {
    QList<Section> sections;
    if (kinds.isEmpty()) {
        for (const WidgetRegistry::CategoryGroup& group : WidgetRegistry::grouped()) {
            Section section{title(group.category), symbol(group.category), {}, {}};
            for (const WidgetDefinition& definition : group.widgets) {
                const WidgetSize size = definition.metadata.defaultSize;
                section.tiles.append(
                    {definition,
                     size,
                     definition.metadata.displayName + QStringLiteral("  ·  ") + label(size),
                     {}});
            }
            sections.append(section);
        }
        return sections;
    }
    const WidgetRegistry registry;
    for (const QString& kind : kinds) {
        const auto definition = registry.definition(kind);
        if (!definition) {
            continue;
        }
        Section section{definition->metadata.displayName, definition->metadata.symbol, {}, {}};
        for (const WidgetSize size : definition->metadata.allowedSizes) {
            section.tiles.append({*definition, size, label(size), {}});
        }
        sections.append(section);
    }
    return sections;
}

// Shelf packing: panels left to right, a new row when the width runs out.
QList<Section> layout(const QStringList& kinds, qreal width, qreal& height) {
    QList<Section> sections = sectionsOf(kinds);
    qreal y = kMargin;
    for (Section& section : sections) {
        section.heading = QRectF(kMargin, y, width - 2 * kMargin, kHeading);
        y += kHeading;
        qreal x = kMargin - TileRenderer::panelMargin;
        qreal rowHeight = 0;
        for (Placed& placed : section.tiles) {
            const QSizeF tile = nominalPixelSize(placed.size);
            const qreal panelWidth = tile.width() + 2 * TileRenderer::panelMargin;
            if (x + panelWidth > width - kMargin + TileRenderer::panelMargin && rowHeight > 0) {
                x = kMargin - TileRenderer::panelMargin;
                y += rowHeight;
                rowHeight = 0;
            }
            placed.tile =
                QRectF(QPointF(x + TileRenderer::panelMargin, y + TileRenderer::panelMargin), tile);
            x += panelWidth + kGap;
            rowHeight = std::max(rowHeight, tile.height() + 2 * TileRenderer::panelMargin + kLabel);
        }
        y += rowHeight + 12;
    }
    height = y + kMargin;
    return sections;
}

} // namespace

void GallerySheet::paintBackdrop(QPainter& painter, const QRectF& rect) {
    painter.fillRect(rect, QColor(0x10, 0x14, 0x24));
    struct Glow {
        qreal x, y, r;
        QColor color;
    };
    const Glow glows[] = {
        {0.15, 0.1, 0.55, QColor(0x3A, 0x5B, 0xD9, 150)},
        {0.85, 0.3, 0.5, QColor(0xC2, 0x4D, 0x9E, 120)},
        {0.3, 0.7, 0.6, QColor(0x1F, 0x9E, 0x8F, 110)},
        {0.8, 0.9, 0.45, QColor(0xE0, 0x8A, 0x3C, 100)},
    };
    const qreal span = std::max(rect.width(), rect.height());
    for (const Glow& g : glows) {
        const QPointF centre(rect.left() + rect.width() * g.x, rect.top() + rect.height() * g.y);
        QRadialGradient gradient(centre, span * g.r);
        gradient.setColorAt(0, g.color);
        gradient.setColorAt(1, QColor(g.color.red(), g.color.green(), g.color.blue(), 0));
        painter.fillRect(rect, gradient);
    }
}

QImage GallerySheet::render(const FaceRegistry& faces, TileRenderer& renderer,
                            const FaceContext& base, const QStringList& kinds, qreal width) {
    qreal height = 0;
    const QList<Section> sections = layout(kinds, width, height);
    const qreal dpr = base.devicePixelRatio > 0 ? base.devicePixelRatio : 1.0;
    QImage image(
        QSize(static_cast<int>(std::ceil(width * dpr)), static_cast<int>(std::ceil(height * dpr))),
        QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    // Scaled by hand: QPainter applies an image's pixel ratio only from 1 up.
    painter.scale(dpr, dpr);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    paintBackdrop(painter, QRectF(0, 0, width, height));

    for (const Section& section : sections) {
        const qreal iconSide = 22;
        FaceKit::drawSymbol(painter, base, section.symbol,
                            QRectF(section.heading.left(),
                                   section.heading.center().y() - iconSide / 2, iconSide, iconSide),
                            QColor(255, 255, 255, 220), section.title);
        FaceKit::drawElided(painter, base, section.heading.adjusted(iconSide + 10, 0, 0, 0),
                            section.title, FaceKit::font(20, QFont::Bold),
                            QColor(255, 255, 255, 235), Qt::AlignLeft | Qt::AlignVCenter);
        for (const Placed& placed : section.tiles) {
            FaceContext context = base;
            context.metadata = placed.definition.metadata;
            context.size = placed.size;
            context.points = placed.tile.size();
            context.scale = 1.0;
            context.settings = {};
            renderer.paint(painter, placed.tile, faces.face(context.kind()), context);
            FaceKit::drawElided(painter, base,
                                QRectF(placed.tile.left(), placed.tile.bottom() + 8,
                                       placed.tile.width(), kLabel - 4),
                                placed.caption, FaceKit::font(11), QColor(255, 255, 255, 170),
                                Qt::AlignLeft | Qt::AlignVCenter);
        }
    }
    painter.end();
    image.setDevicePixelRatio(dpr);
    return image;
}

} // namespace tw
