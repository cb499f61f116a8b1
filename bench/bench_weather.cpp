// The weather's scenes, frame by frame at 2× on a wide tile, each by day and by night at either
// level; the whole weather tile animated at its common sizes; and the floor of any frame, one
// copy of a picture the card's size.
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/PictureCache.h"
#include "faces/TileRenderer.h"
#include "faces/WeatherScene.h"
#include "look/Theme.h"
#include "model/WidgetRegistry.h"
#include "platform/linux/MaterialSymbolProvider.h"
#include "weather/MockForecast.h"

#include <QGuiApplication>
#include <QImage>
#include <QLoggingCategory>
#include <QPainter>

#include <benchmark/benchmark.h>
#include <cmath>

using namespace tw;

namespace {

const QDateTime kNoon(QDate(2026, 11, 22), QTime(12, 0));
// The inside of a wide tile, in points.
const QRectF kWideCard(0, 0, 180, 72);
constexpr double frame = 1.0 / 30;

QImage target(const QSizeF& points) {
    QImage image(QSize(static_cast<int>(std::ceil(points.width() * 2)),
                       static_cast<int>(std::ceil(points.height() * 2))),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    return image;
}

// One frame of a scene, the tile's picture cache warm, time moving a frame at a time.
void sceneFrame(benchmark::State& state, WxScene scene, bool night, WeatherScene::Level level) {
    PictureCache pictures;
    QImage image = target(kWideCard.size());
    WeatherScene::Frame f{.scene = scene, .night = night, .time = 0, .level = level};
    for (auto _ : state) {
        f.time += frame;
        image.fill(Qt::transparent);
        QPainter painter(&image);
        WeatherScene::paint(painter, kWideCard, f, &pictures, 2);
    }
}

// The least a frame can cost: the card's picture copied once.
void copyFloor(benchmark::State& state) {
    PictureCache pictures;
    QImage image = target(kWideCard.size());
    for (auto _ : state) {
        image.fill(Qt::transparent);
        QPainter painter(&image);
        pictures.draw(painter, kWideCard, QStringLiteral("floor"), 2,
                      [](QPainter& p) { p.fillRect(kWideCard, Qt::blue); });
    }
}

// A frame of the whole tile as a desktop panel draws it: its background picture, the scene and
// the figures.
void wholeTile(benchmark::State& state, WidgetSize size, const QString& condition,
               const QString& level) {
    static const MaterialSymbolProvider symbols;
    static const FaceRegistry faces;
    TileRenderer renderer;
    PictureCache pictures;
    FaceContext context = FaceContext::forKind(
        WidgetRegistry::builtInDefinition(QStringLiteral("weather"))->metadata, size);
    context.theme = Theme::defaultTheme();
    context.devicePixelRatio = 2;
    context.now = kNoon;
    context.surface = SurfaceFlags::desktop();
    context.symbols = &symbols;
    context.pictures = &pictures;
    context.settings = {{QStringLiteral("mode"), QStringLiteral("manual")},
                        {QStringLiteral("condition"), condition},
                        {QStringLiteral("sceneLevel"), level}};
    const WidgetFace& face = faces.face(QStringLiteral("weather"));
    QImage image = target(context.points + QSizeF(2, 2) * TileRenderer::panelMargin);
    const QRectF tile(QPointF(TileRenderer::panelMargin, TileRenderer::panelMargin),
                      context.points);
    // The panel keeps its shadow and glass as one picture and draws the face over it.
    QImage background = image;
    background.fill(Qt::transparent);
    {
        QPainter painter(&background);
        renderer.paintBackground(painter, tile, context);
    }
    for (auto _ : state) {
        context.sceneTime += frame;
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(QPointF(0, 0), background);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        renderer.paintFace(painter, tile, face, context);
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    using Level = WeatherScene::Level;
    for (WxScene scene : allWxScenes) {
        for (bool night : {false, true}) {
            for (Level level : {Level::subtle, Level::full}) {
                const std::string name = "scene/" + rawValue(scene).toStdString() +
                                         (night ? "/night" : "/day") +
                                         (level == Level::full ? "/full" : "/subtle") + "/wide@2x";
                benchmark::RegisterBenchmark(name.c_str(), sceneFrame, scene, night, level)
                    ->Unit(benchmark::kMicrosecond)
                    ->Repetitions(5)
                    ->ReportAggregatesOnly(true);
            }
        }
    }
    benchmark::RegisterBenchmark("scene/floor-one-copy/wide@2x", copyFloor)
        ->Unit(benchmark::kMicrosecond)
        ->Repetitions(5)
        ->ReportAggregatesOnly(true);
    for (WidgetSize size : {WidgetSize::wide, WidgetSize::grand}) {
        for (const char* condition : {"clear", "rain", "snow"}) {
            for (const char* level : {"subtle", "full"}) {
                const std::string name = std::string("tile/weather-") + condition + "/" + level +
                                         "/" + rawValue(size).toStdString() + "@2x";
                benchmark::RegisterBenchmark(name.c_str(), wholeTile, size,
                                             QString::fromLatin1(condition),
                                             QString::fromLatin1(level))
                    ->Unit(benchmark::kMicrosecond)
                    ->Repetitions(5)
                    ->ReportAggregatesOnly(true);
            }
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
