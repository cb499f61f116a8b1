// The glass over the desktop's own picture: what a change of picture costs once (a 4K picture
// fitted to a 1920 × 1080 display at 1x and 2x and blurred twice) and what it keeps, and what one
// panel's background costs each time it is made (a new place, size or look), over that display's
// pictures.
#include "desktop/WallpaperBackdrop.h"
#include "faces/FaceContext.h"
#include "faces/TileRenderer.h"
#include "look/Theme.h"
#include "model/WidgetRegistry.h"

#include <QGuiApplication>
#include <QImage>
#include <QLoggingCategory>

#include <benchmark/benchmark.h>

namespace {

using namespace tw;

// The blur radii the backdrop gives its frosted and clear pictures.
constexpr int kFrostedRadius = 3;
constexpr int kClearRadius = 2;

// A picture with detail everywhere, so that no part of the work is cheaper than real.
QImage picture(const QSize& size) {
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            line[x] = qRgb((x * 7) & 255, (y * 5) & 255, ((x + y) * 3) & 255);
        }
    }
    return image;
}

const QSize kDisplay(1920, 1080);

// The parts of one change of picture at a display's pixel ratio: 0 fitting the 4K picture to the
// display's device pixels, 1 the frosted picture, 2 the clear one, 3 all three as the backdrop
// does them. "held" is what the three pictures of the display keep in memory.
void pictureChange(benchmark::State& state) {
    const QImage source = picture(QSize(3840, 2160));
    const int part = static_cast<int>(state.range(0));
    const qreal ratio = WallpaperBackdrop::detailRatio(source.size(), DesktopPicture::Fill::zoom,
                                                       kDisplay, double(state.range(1)));
    const auto fit = [&] {
        return WallpaperBackdrop::fitted(source, DesktopPicture::Fill::zoom, kDisplay, ratio);
    };
    const auto frost = [&](const QImage& sharp) {
        return WallpaperBackdrop::blurred(sharp, WallpaperBackdrop::frostedReduction * ratio,
                                          kFrostedRadius);
    };
    const auto clear = [&](const QImage& sharp) {
        return WallpaperBackdrop::blurred(sharp, WallpaperBackdrop::clearReduction * ratio,
                                          kClearRadius);
    };
    const QImage sharp = fit();
    for (auto _ : state) {
        if (part == 0) {
            benchmark::DoNotOptimize(fit());
        } else if (part == 1) {
            benchmark::DoNotOptimize(frost(sharp));
        } else if (part == 2) {
            benchmark::DoNotOptimize(clear(sharp));
        } else {
            const QImage fitted = fit();
            benchmark::DoNotOptimize(frost(fitted));
            benchmark::DoNotOptimize(clear(fitted));
        }
    }
    state.counters["heldMiB"] =
        double(sharp.sizeInBytes() + frost(sharp).sizeInBytes() + clear(sharp).sizeInBytes()) /
        (1024 * 1024);
}

// One frosted background of a large clock at the given pixel ratio, the picture in its margin
// when the window is not blended with the desktop. The renderer keeps the tile's shadow, as a
// panel's own renderer does once it has drawn.
void panelBackground(benchmark::State& state) {
    const QImage sharp = picture(kDisplay);
    FaceContext context = FaceContext::forKind(
        WidgetRegistry::builtInDefinition(QStringLiteral("clock"))->metadata, WidgetSize::large);
    context.theme = Theme::defaultTheme();
    context.devicePixelRatio = static_cast<qreal>(state.range(0));
    const QSizeF panel = TileRenderer::panelRect(QRectF(QPointF(), context.points)).size();
    const GlassBackdrop backdrop{
        .sharp = sharp,
        .frosted =
            WallpaperBackdrop::blurred(sharp, WallpaperBackdrop::frostedReduction, kFrostedRadius),
        .clear = WallpaperBackdrop::blurred(sharp, WallpaperBackdrop::clearReduction, kClearRadius),
        .display = QSizeF(kDisplay),
        .panel = QRectF(QPointF(700, 300), panel),
        .identity = QStringLiteral("bench"),
    };
    const bool opaqueMargin = state.range(1) != 0;
    TileRenderer renderer;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            renderer.panelBackground(context.points, context, backdrop, opaqueMargin));
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    benchmark::RegisterBenchmark("backdrop/picture-change/3840x2160-on-1920x1080", pictureChange)
        ->ArgNames({"part", "scale"})
        ->ArgsProduct({{0, 1, 2, 3}, {1, 2}})
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("backdrop/panel-background/clock-large", panelBackground)
        ->ArgNames({"scale", "opaqueMargin"})
        ->ArgsProduct({{1, 2}, {0, 1}})
        ->Unit(benchmark::kMicrosecond);

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
