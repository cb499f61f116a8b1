#include "app/LaunchModes.h"
#include "app/SceneWidgets.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "desktop/GlassScene.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/FaceRegistry.h"
#include "platform/PlatformServices.h"
#include "tick/SnapshotClock.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace tw {

namespace {

constexpr QSizeF canvas(1280, 720);
// Each look's group of tiles grows by this tile scale so that the faces read at a glance.
constexpr double groupScale = 1.4;
constexpr double groupGap = 72;

void paintLabel(QPainter& painter, const QRectF& below, const QString& text, bool light) {
    const QFont font = FaceKit::font(19, QFont::DemiBold);
    painter.setFont(font);
    const double width = QFontMetricsF(font).horizontalAdvance(text) + 40;
    const QRectF pill(below.center().x() - width / 2, below.bottom() + 26, width, 38);
    QPainterPath path;
    path.addRoundedRect(pill, pill.height() / 2, pill.height() / 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(light ? QColor(255, 255, 255, 190) : QColor(10, 14, 24, 150));
    painter.drawPath(path);
    painter.setPen(light ? QColor(28, 30, 36) : QColor(244, 246, 250));
    painter.drawText(pill, Qt::AlignCenter, text);
}

} // namespace

std::optional<int> runSnapshotGlassHeroMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QString problem = options.problem;
    const QList<SceneLook> shown = options.sceneLooks(problem);
    QStringList ids;
    for (const SceneLook& look : shown) {
        ids << look.id;
    }
    const double ratio = options.devicePixelRatio;
    const QSize pixels(int(std::lround(canvas.width() * ratio)),
                       int(std::lround(canvas.height() * ratio)));
    QImage picture;
    const QImage wallpaper =
        problem.isEmpty() ? options.wallpaperPicture(pixels, problem) : QImage();
    if (problem.isEmpty()) {
        const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
        const FaceRegistry faces;
        GlassScene scene(wallpaper, canvas, ratio);
        FaceContext base = options.baseContext(*symbols, context.clock.now());
        picture = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(ratio, ratio);
        scene.paintPicture(painter);
        const double side = (96 * 2 + 12) * groupScale;
        const double total = shown.size() * side + (shown.size() - 1) * groupGap;
        const QPointF origin((canvas.width() - total) / 2, (canvas.height() - side - 64) / 2);
        for (qsizetype i = 0; i < shown.size(); ++i) {
            base.glass.finish = shown.at(i).finish;
            const QPointF corner = origin + QPointF(i * (side + groupGap), 0);
            for (const auto& [at, widget] : SceneWidgets::clocks(groupScale)) {
                scene.paintWidget(painter, corner + at, widget, base, faces);
            }
            paintLabel(painter, QRectF(corner, QSizeF(side, side)), shown.at(i).name,
                       options.shade == GlassLook::Shade::Light);
        }
        painter.end();
        picture.setDevicePixelRatio(ratio);
    }
    return reportSnapshot(
        context, QStringLiteral("snapshot-glass-hero"), path, picture, problem,
        QStringLiteral(" style=%1 dark=%2").arg(ids.join(QLatin1Char(',')), options.darkField()));
}

} // namespace tw
