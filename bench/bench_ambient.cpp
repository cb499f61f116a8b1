// One frame of each animated ambient kind at 2× on its largest size, the scene moving on a
// frame's worth each time, with the pictures kept between frames as on the desktop; and a loop
// of each sound rendered.
#include "ambient/Soundscape.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/PictureCache.h"
#include "faces/TileRenderer.h"
#include "faces/TileShape.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"

#include <QGuiApplication>
#include <QImage>
#include <QLoggingCategory>
#include <QPainter>

#include <benchmark/benchmark.h>

using namespace tw;

namespace {

void frame(benchmark::State& state, const QString& kind, WidgetSize size, double fps) {
    static const FaceRegistry faces;
    static const NullSymbolProvider symbols;
    const WidgetMetadata metadata = WidgetRegistry::builtInDefinition(kind)->metadata;
    FaceContext context = FaceContext::forKind(metadata, size);
    context.theme = Theme::defaultTheme();
    context.devicePixelRatio = 2;
    context.symbols = &symbols;
    PictureCache pictures;
    context.pictures = &pictures;
    const QRectF rect = TileRenderer::contentRect(context.points, TileShape::of(metadata));
    QImage image((context.points * 2).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    const WidgetFace& face = faces.face(kind);
    for (auto _ : state) {
        context.sceneTime += 1.0 / fps;
        image.fill(Qt::transparent);
        QPainter painter(&image);
        face.paint(painter, rect, context);
    }
}

void loop(benchmark::State& state, AmbientSound sound) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            Soundscape::render(sound, LoopRecipe{.sampleRate = 48000, .seconds = 20, .seed = 1}));
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    benchmark::RegisterBenchmark("frame/starfield/wideTall@2x", frame, QStringLiteral("starfield"),
                                 WidgetSize::wideTall, 15.0)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("frame/companion/large@2x", frame, QStringLiteral("companion"),
                                 WidgetSize::large, 15.0)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("frame/ambientsound/wideTall@2x", frame,
                                 QStringLiteral("ambientsound"), WidgetSize::wideTall, 12.0)
        ->Unit(benchmark::kMicrosecond);
    for (const AmbientSound sound : allAmbientSounds()) {
        const std::string name = "loop20s/" + settingValue(sound).toStdString();
        benchmark::RegisterBenchmark(name.c_str(), loop, sound)->Unit(benchmark::kMillisecond);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
