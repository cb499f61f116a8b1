#include "app/LaunchModes.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "faces/LiquidGlassRenderer.h"
#include "faces/TileRenderer.h"
#include "model/WidgetSize.h"

#include <QImage>
#include <QImageReader>
#include <QPainter>

#include <cmath>

namespace tw {

namespace {

// Diagonal stripes of four colours, sharp enough to show the bending and the split into colour.
QImage stripes(QSize pixels) {
    const QRgb colours[] = {qRgb(214, 64, 52), qRgb(40, 132, 214), qRgb(246, 204, 70),
                            qRgb(32, 150, 96)};
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    const int band = std::max(1, pixels.height() / 14);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            line[x] = colours[((x + y) / band) % 4];
        }
    }
    return image;
}

struct GlassChoice {
    WidgetSize size = WidgetSize::large;
    double frost = 0.0;
    QImage backdrop; // null: the stripes
    QString problem;
};

GlassChoice choose(const LaunchArguments& arguments, const SnapshotWidgetOptions& options) {
    GlassChoice choice;
    if (!options.size.isEmpty()) {
        const std::optional<WidgetSize> size = widgetSizeFromRawValue(options.size);
        if (!size) {
            choice.problem = QStringLiteral("unknown --size \"%1\".").arg(options.size);
            return choice;
        }
        choice.size = *size;
    }
    if (const std::optional<QString> frost = arguments.value(QStringLiteral("--frost"))) {
        bool ok = false;
        const double value = frost->toDouble(&ok);
        if (!ok || !std::isfinite(value)) {
            choice.problem =
                QStringLiteral("--frost needs a number from 0 to 1, not \"%1\".").arg(*frost);
            return choice;
        }
        choice.frost = std::clamp(value, 0.0, 1.0);
    }
    if (const std::optional<QString> path = arguments.value(QStringLiteral("--backdrop"))) {
        QImageReader reader(*path);
        choice.backdrop = reader.read();
        if (choice.backdrop.isNull()) {
            choice.problem =
                QStringLiteral("cannot read --backdrop %1: %2.").arg(*path, reader.errorString());
        }
    }
    return choice;
}

// The tile's panel over the backdrop, which fills the panel as a wallpaper fills a screen, with
// the lens rendered from the part of the backdrop behind the tile.
QImage glassPicture(const GlassChoice& choice, const SnapshotWidgetOptions& options) {
    const double scale = options.devicePixelRatio;
    const QSizeF tile = nominalPixelSize(choice.size);
    const double margin = TileRenderer::panelMargin;
    const QSize canvas(static_cast<int>(std::ceil((tile.width() + 2 * margin) * scale)),
                       static_cast<int>(std::ceil((tile.height() + 2 * margin) * scale)));
    const QImage backdrop = choice.backdrop.isNull() ? stripes(canvas) : choice.backdrop;
    const double fill = std::max(static_cast<double>(canvas.width()) / backdrop.width(),
                                 static_cast<double>(canvas.height()) / backdrop.height());
    // Canvas pixels to backdrop pixels, centred.
    const QPointF offset((backdrop.width() * fill - canvas.width()) / 2,
                         (backdrop.height() * fill - canvas.height()) / 2);
    const QRectF tilePixels(margin * scale, margin * scale, tile.width() * scale,
                            tile.height() * scale);
    const QRectF source((tilePixels.x() + offset.x()) / fill, (tilePixels.y() + offset.y()) / fill,
                        tilePixels.width() / fill, tilePixels.height() / fill);

    LiquidGlassParams params;
    params.size = tile;
    params.scale = scale;
    params.frost = choice.frost;
    params.lightGlass = options.shade == GlassLook::Shade::Light;
    QImage lens = LiquidGlassRenderer::render(backdrop, source, params);
    lens.setDevicePixelRatio(1);

    QImage picture(canvas, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(-offset, backdrop.size() * fill), backdrop);
    painter.drawImage(tilePixels.topLeft(), lens);
    painter.end();
    picture.setDevicePixelRatio(scale);
    return picture;
}

} // namespace

std::optional<int> runSnapshotGlassMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    const GlassChoice choice = choose(context.arguments, options);
    const QString problem = choice.problem.isEmpty() ? options.problem : choice.problem;
    return reportSnapshot(context, QStringLiteral("snapshot-glass"), path,
                          problem.isEmpty() ? glassPicture(choice, options) : QImage(), problem,
                          QStringLiteral(" size=%1").arg(rawValue(choice.size)));
}

} // namespace tw
