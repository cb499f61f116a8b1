// The cost of drawing tiles: each face with its own view once at its largest size at a pixel ratio
// of 2 (glass, cached shadow and face), the faces of the machine's readings from a busy board and
// those of the weather from a board with its air, the network tile redrawn with new traffic at
// every reading, a seconds clock redrawn tick after tick, and the whole gallery sheet; a liquid
// lens rendered afresh and found in the cache.
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/GallerySheet.h"
#include "faces/LiquidCache.h"
#include "faces/LiquidGlassRenderer.h"
#include "faces/TileRenderer.h"
#include "look/Theme.h"
#include "model/WidgetRegistry.h"
#include "platform/linux/MaterialSymbolProvider.h"
#include "weather/MockForecast.h"

#include <QGuiApplication>
#include <QImage>
#include <QLoggingCategory>
#include <QPainter>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>

namespace {

using namespace tw;

const QDateTime kStart(QDate(2026, 11, 22), QTime(10, 9, 41));

// A minute of traffic through two interfaces, the rates different at every reading.
ReadingsBoard trafficBoard(int start) {
    ReadingsBoard board;
    for (int i = start; i < start + ReadingsBoard::historyLength; ++i) {
        NetworkSnapshot reading;
        reading.interfaces = {InterfaceRate{QStringLiteral("wlan0"), true, true,
                                            2e5 + 9e5 * std::sin(i / 6.0) * std::sin(i / 6.0),
                                            3e4 + (i % 17) * 1e3, 1'234'000'000ULL + i * 1000ULL,
                                            345'000'000},
                              InterfaceRate{QStringLiteral("enp3s0"), false, true, 1200.0 + i, 300,
                                            5'000'000, 1'000'000}};
        board.networkHistory << reading;
    }
    board.network = board.networkHistory.last();
    return board;
}

// A busy machine with full histories: eight cores, six programs, three temperatures and two fans,
// traffic, five volumes, a battery running down and four devices.
ReadingsBoard busyBoard() {
    ReadingsBoard b = trafficBoard(0);
    b.battery = BatterySnapshot{.percent = 76,
                                .isCharging = false,
                                .isPluggedIn = false,
                                .hasBattery = true,
                                .timeToEmpty = 130,
                                .timeToFull = -1};
    QList<Volume> volumes;
    for (int i = 0; i < 5; ++i) {
        volumes << Volume{QStringLiteral("/mnt/v%1").arg(i), QStringLiteral("Volume %1").arg(i),
                          qint64(1e11) * (i + 1), qint64(5e11) * (i + 1), i == 3};
    }
    volumes.first().path = QStringLiteral("/");
    b.volumes = volumes;
    b.bluetoothAvailable = true;
    for (int i = 0; i < 4; ++i) {
        b.bluetooth << BluetoothDevice{QStringLiteral("AA:%1").arg(i),
                                       QStringLiteral("Device %1").arg(i),
                                       QStringLiteral("input-mouse"), i < 2, 20 * (i + 1)};
    }
    for (int i = 0; i < ReadingsBoard::historyLength; ++i) {
        SystemSnapshot s;
        s.cpu = 0.3 + 0.2 * std::sin(i / 5.0);
        s.gpu = 0.1;
        s.ramUsed = 9e9;
        s.ramTotal = 16e9;
        s.diskFree = 180e9;
        s.diskTotal = 500e9;
        b.systemHistory << s;
        b.activityHistory << s.cpu;
        SensorSnapshot t;
        t.temperatures = {{SensorKind::soc, 50 + 5 * std::sin(i / 4.0), 4},
                          {SensorKind::battery, 31, 1},
                          {SensorKind::storage, 38, 1}};
        b.sensorHistory << t;
    }
    b.system = b.systemHistory.last();
    ActivitySnapshot a;
    a.cores = {0.8, 0.3, 0.6, 0.1, 0.4, 0.05, 0.9, 0.2};
    a.memTotal = 16e9;
    a.memApp = 6e9;
    a.memWired = 2e9;
    a.memCompressed = 1e9;
    a.memCached = 3e9;
    for (int i = 0; i < 6; ++i) {
        const ActivityProcess p{i, QStringLiteral("program-%1").arg(i), 1.5 / (i + 1),
                                quint64(2e9) / quint64(i + 1)};
        a.byCPU << p;
        a.byMemory << p;
    }
    b.activity = a;
    b.sensors = b.sensorHistory.last();
    b.sensors->others = {{QStringLiteral("acpitz temp1"), std::nullopt, 28},
                         {QStringLiteral("nvme Sensor 2"), std::nullopt, 45}};
    b.sensors->fans = {1850, 2100};
    b.sensors->hasFans = true;
    return b;
}

// The weather where the machine is, with its air, for the faces of the sky and the air.
WeatherBoard weatherBoard() {
    WxLive live = mockLive(WxScene::clouds, kStart);
    live.city = QStringLiteral("Berlin");
    live.air = WxAirQuality{.index = 27, .pm25 = 8.4, .pm10 = 14.2};
    WeatherPlace place;
    place.state = WeatherState::ready(live);
    place.lastGood = live;
    place.latitude = 52.52;
    place.longitude = 13.405;
    WeatherBoard board;
    board.places.insert(WeatherBoard::currentPlace, place);
    return board;
}

struct Fixture {
    MaterialSymbolProvider symbols;
    FaceRegistry faces;
    TileRenderer renderer;
    ReadingsBoard board = busyBoard();
    WeatherBoard weather = weatherBoard();

    FaceContext context(const QString& kind, WidgetSize size,
                        const WidgetSettings& settings = {}) const {
        FaceContext c =
            FaceContext::forKind(WidgetRegistry::builtInDefinition(kind)->metadata, size);
        c.theme = Theme::defaultTheme();
        c.devicePixelRatio = 2;
        c.now = kStart;
        c.settings = settings;
        c.surface = SurfaceFlags::desktop();
        c.symbols = &symbols;
        c.readings = &board;
        c.weather = &weather;
        return c;
    }
};

Fixture& fixture() {
    static Fixture f;
    return f;
}

WidgetSize largestSize(const WidgetMetadata& metadata) {
    return *std::max_element(
        metadata.allowedSizes.begin(), metadata.allowedSizes.end(),
        [](WidgetSize a, WidgetSize b) { return cellCount(a) < cellCount(b); });
}

QImage panelImage(const QSizeF& tile) {
    QImage image(
        QSize(static_cast<int>(std::ceil((tile.width() + 2 * TileRenderer::panelMargin) * 2)),
              static_cast<int>(std::ceil((tile.height() + 2 * TileRenderer::panelMargin) * 2))),
        QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    return image;
}

// One full redraw of a panel, as a desktop panel's paint event does it, time moving a second a
// frame.
void drawTile(benchmark::State& state, const QString& kind, WidgetSize size,
              const WidgetSettings& settings) {
    Fixture& f = fixture();
    FaceContext context = f.context(kind, size, settings);
    const WidgetFace& face = f.faces.face(kind);
    QImage image = panelImage(context.points);
    const QRectF tile(QPointF(TileRenderer::panelMargin, TileRenderer::panelMargin),
                      context.points);
    qint64 second = 0;
    for (auto _ : state) {
        context.now = kStart.addSecs(++second);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        f.renderer.paint(painter, tile, face, context);
    }
}

// The network tile redrawn once a second as new readings arrive: new rates, a history moved on.
void networkTick(benchmark::State& state) {
    Fixture& f = fixture();
    FaceContext context = f.context(QStringLiteral("network"), WidgetSize::grand);
    const WidgetFace& face = f.faces.face(QStringLiteral("network"));
    QImage image = panelImage(context.points);
    const QRectF tile(QPointF(TileRenderer::panelMargin, TileRenderer::panelMargin),
                      context.points);
    QList<ReadingsBoard> boards;
    for (int i = 0; i < 120; ++i) {
        boards << trafficBoard(i);
    }
    qsizetype next = 0;
    for (auto _ : state) {
        context.readings = &boards.at(next++ % boards.size());
        image.fill(Qt::transparent);
        QPainter painter(&image);
        f.renderer.paint(painter, tile, face, context);
    }
}

// The parts of one tick of the seconds clock: 0 clearing the panel, 1 the cached shadow, 2 the
// glass drawn afresh (the renderer keeps it, this shows why), 3 the face.

void partsOfATick(benchmark::State& state) {
    Fixture& f = fixture();
    FaceContext context = f.context(QStringLiteral("clock"), WidgetSize::wide);
    const WidgetFace& face = f.faces.face(QStringLiteral("clock"));
    QImage image = panelImage(context.points);
    const QRectF tile(QPointF(TileRenderer::panelMargin, TileRenderer::panelMargin),
                      context.points);
    const int part = static_cast<int>(state.range(0));
    qint64 second = 0;
    for (auto _ : state) {
        context.now = kStart.addSecs(++second);
        if (part == 0) {
            image.fill(Qt::transparent);
            continue;
        }
        QPainter painter(&image);
        if (part == 1) {
            f.renderer.paintShadow(painter, tile, 2);
        } else if (part == 2) {
            TileRenderer::paintGlass(painter, tile, context);
        } else {
            f.renderer.paintFace(painter, tile, face, context);
        }
    }
}

void gallerySheet(benchmark::State& state) {
    Fixture& f = fixture();
    FaceContext base = f.context(QStringLiteral("clock"), WidgetSize::small);
    base.surface = SurfaceFlags::snapshot();
    for (auto _ : state) {
        benchmark::DoNotOptimize(GallerySheet::render(f.faces, f.renderer, base));
    }
}

// A desktop picture with detail everywhere, so that no part of the lens is cheaper than real.
QImage wallpaper() {
    QImage image(1920, 1080, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            line[x] = qRgb((x * 7) & 255, (y * 5) & 255, ((x + y) * 3) & 255);
        }
    }
    return image;
}

LiquidRequest lensRequest(double frost, double x) {
    LiquidRequest request;
    request.identity = QStringLiteral("screen-1|wallpaper.jpg");
    request.source = QRectF(x, 200, 840, 624);
    request.params.size = QSizeF(420, 312);
    request.params.scale = 2;
    request.params.frost = frost;
    return request;
}

// One render of a 420 × 312 point tile at 2x; the argument is the frost in tenths, -1 for a lens
// with no backdrop (the shape and light alone).
void liquidRender(benchmark::State& state) {
    const QImage backdrop = state.range(0) < 0 ? QImage() : wallpaper();
    const LiquidRequest request = lensRequest(std::max<double>(state.range(0), 0) / 10.0, 500);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            LiquidGlassRenderer::render(backdrop, request.source, request.params));
    }
}

// The last of a full cache's pictures, with the source off by a fraction of a pixel.
void liquidCacheHit(benchmark::State& state) {
    LiquidCache cache;
    QImage picture(840, 624, QImage::Format_RGBA8888_Premultiplied);
    for (int i = 0; i < LiquidCache::capacity; ++i) {
        cache.store(picture, lensRequest(0, i * 4.0));
    }
    const LiquidRequest wanted = lensRequest(0, (LiquidCache::capacity - 1) * 4.0 + 0.3);
    for (auto _ : state) {
        benchmark::DoNotOptimize(cache.cached(wanted));
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    for (const QString& kind : fixture().faces.kinds()) {
        const WidgetSize size = largestSize(WidgetRegistry::builtInDefinition(kind)->metadata);
        const std::string name =
            "face/" + kind.toStdString() + "/" + rawValue(size).toStdString() + "@2x";
        benchmark::RegisterBenchmark(name.c_str(), drawTile, kind, size, WidgetSettings())
            ->Unit(benchmark::kMicrosecond)
            ->Repetitions(9)
            ->ReportAggregatesOnly(true);
    }
    const WidgetSettings analog{{QStringLiteral("style"), QStringLiteral("analog")}};
    benchmark::RegisterBenchmark("face/clock-analog/large@2x", drawTile, QStringLiteral("clock"),
                                 WidgetSize::large, analog)
        ->Unit(benchmark::kMicrosecond)
        ->Repetitions(9)
        ->ReportAggregatesOnly(true);
    // The tile most often on a desktop, redrawn once a second.
    benchmark::RegisterBenchmark("tick/clock-seconds/wide@2x", drawTile, QStringLiteral("clock"),
                                 WidgetSize::wide, WidgetSettings())
        ->Unit(benchmark::kMicrosecond)
        ->Repetitions(9)
        ->ReportAggregatesOnly(true);
    benchmark::RegisterBenchmark("tick/network-traffic/grand@2x", networkTick)
        ->Unit(benchmark::kMicrosecond)
        ->Repetitions(9)
        ->ReportAggregatesOnly(true);
    benchmark::RegisterBenchmark("face/generic/grand@2x", drawTile, QStringLiteral("photos"),
                                 WidgetSize::grand, WidgetSettings())
        ->Unit(benchmark::kMicrosecond)
        ->Repetitions(9)
        ->ReportAggregatesOnly(true);
    benchmark::RegisterBenchmark("tick/clock-seconds-parts/wide@2x", partsOfATick)
        ->ArgName("part")
        ->DenseRange(0, 3)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("gallery/sheet@2x", gallerySheet)
        ->Unit(benchmark::kMillisecond)
        ->Repetitions(5)
        ->ReportAggregatesOnly(true);

    benchmark::RegisterBenchmark("liquid/render/420x312@2x", liquidRender)
        ->ArgName("frost10")
        ->Arg(-1)
        ->Arg(0)
        ->Arg(5)
        ->Arg(10)
        ->Unit(benchmark::kMillisecond)
        ->Repetitions(5)
        ->ReportAggregatesOnly(true);
    benchmark::RegisterBenchmark("liquid/cache-hit", liquidCacheHit)->Unit(benchmark::kMicrosecond);

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
