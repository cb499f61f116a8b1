#include "app/LaunchModes.h"
#include "app/SceneWidgets.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "desktop/GlassScene.h"
#include "desktop/PaneInk.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/FaceRegistry.h"
#include "platform/PlatformServices.h"
#include "text/L.h"
#include "tick/SnapshotClock.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace tw {

namespace {

constexpr QSizeF card(880, 436);
constexpr double padding = 36;
constexpr double gutter = 24;
constexpr double previewHeight = 200;
// The preview's clock, large enough to show the lens at its rim.
constexpr double tileScale = 1.5;

QString sentenceOf(GlassLook::Finish finish) {
    switch (finish) {
    case GlassLook::Finish::Frosted:
        return L("glassintro.frosted",
                 QStringLiteral("Milky and calm: the wallpaper blurs softly behind the widget, "
                                "and its text reads over any picture."));
    case GlassLook::Finish::Clear:
        return L("glassintro.clear", QStringLiteral("Lets most of the wallpaper through, lightly "
                                                    "blurred, for a desk that feels open."));
    case GlassLook::Finish::Liquid:
        return L("glassintro.liquid",
                 QStringLiteral("A real lens: the picture behind bends and brightens towards the "
                                "edges and catches the light."));
    }
    return {};
}

} // namespace

std::optional<int> runSnapshotGlassIntroMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QString problem = options.problem;
    const QList<SceneLook> looks = options.sceneLooks(problem);
    const double ratio = options.devicePixelRatio;
    const QSizeF strip(card.width() - 2 * padding, previewHeight);
    const QImage wallpaper =
        problem.isEmpty() ? options.wallpaperPicture((strip * ratio).toSize(), problem) : QImage();
    QImage picture;
    if (problem.isEmpty()) {
        const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
        const FaceRegistry faces;
        const PaneInk ink = PaneInk::of(options.shade);
        FaceContext base = options.baseContext(*symbols, context.clock.now());
        // One wallpaper runs behind the three previews, as one desktop behind three windows.
        GlassScene scene(wallpaper, strip, ratio);
        picture = QImage((card * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(ink.background);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::TextAntialiasing);
        painter.scale(ratio, ratio);
        const double width = strip.width();
        double y = padding;
        y += PaneInk::paragraph(painter, QPointF(padding, y), width,
                                L("glassintro.title", QStringLiteral("Three kinds of glass")),
                                FaceKit::font(26, QFont::Bold), ink.primary) +
             6;
        y += PaneInk::paragraph(
                 painter, QPointF(padding, y), width,
                 L("glassintro.lead", QStringLiteral("Your widgets stand on glass made from your "
                                                     "own wallpaper. Pick the look you like; you "
                                                     "can change it at any time.")),
                 FaceKit::font(14), ink.secondary) +
             22;
        const double column = (width - gutter * (looks.size() - 1)) / looks.size();
        const WidgetInstance clock =
            SceneWidgets::widget("clock", WidgetSize::small,
                                 {{QStringLiteral("style"), QStringLiteral("analog")}}, tileScale);
        const double side = 96 * tileScale;
        for (qsizetype i = 0; i < looks.size(); ++i) {
            const double x = i * (column + gutter);
            QPainterPath window;
            window.addRoundedRect(QRectF(padding + x, y, column, previewHeight), 14, 14);
            painter.save();
            painter.setClipPath(window);
            painter.translate(padding, y);
            scene.paintPicture(painter);
            base.glass.finish = looks.at(i).finish;
            scene.paintWidget(painter, QPointF(x + (column - side) / 2, (previewHeight - side) / 2),
                              clock, base, faces);
            painter.restore();
            const double below = y + previewHeight + 16;
            const double name =
                PaneInk::paragraph(painter, QPointF(padding + x, below), column, looks.at(i).name,
                                   FaceKit::font(17, QFont::DemiBold), ink.primary);
            PaneInk::paragraph(painter, QPointF(padding + x, below + name + 4), column,
                               sentenceOf(looks.at(i).finish), FaceKit::font(13), ink.secondary);
        }
        painter.end();
        picture.setDevicePixelRatio(ratio);
    }
    return reportSnapshot(context, QStringLiteral("snapshot-glassintro"), path, picture, problem,
                          QStringLiteral(" dark=%1").arg(options.darkField()));
}

} // namespace tw
