// Placement against a crowded 5K screen (200 tiles) and the store's file work with 500 widgets:
// a drag step must never cost a frame, and a drop decision must stay well under a millisecond.
#include "grid/DesktopSnap.h"
#include "grid/DropDecision.h"
#include "grid/FreeSpot.h"
#include "grid/GridStore.h"
#include "grid/OverlapResolver.h"
#include "model/WidgetRegistry.h"
#include "platform/QtScheduler.h"
#include "platform/SystemClock.h"
#include "platform/null/FixedDisplays.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace tw;

const QRectF kFrame(0, 0, 5120, 2880);
const QList<WidgetSize> kMix{WidgetSize::small, WidgetSize::wide, WidgetSize::large,
                             WidgetSize::tall, WidgetSize::banner};

// 200 tiles of mixed sizes, each where freeSpot puts it: the screen fills from the top-left.
QList<DropDecision::Tile> packedTiles() {
    QList<DropDecision::Tile> tiles;
    QList<QRectF> rects;
    for (int i = 0; tiles.size() < 200; ++i) {
        const WidgetSize size = kMix.at(i % kMix.size());
        const QSizeF pixels = nominalPixelSize(size);
        const auto spot = FreeSpot::find(pixels, kFrame, rects);
        const QRectF rect(spot->x(), spot->y() - pixels.height(), pixels.width(), pixels.height());
        rects.append(rect);
        tiles.append({QUuid::createUuid(), size, rect});
    }
    return tiles;
}

// 200 tiles strewn over the screen, overlapping each other: the hard case for every search.
QList<DropDecision::Tile> scatteredTiles() {
    QRandomGenerator random(7);
    QList<DropDecision::Tile> tiles;
    for (int i = 0; i < 200; ++i) {
        const WidgetSize size = kMix.at(i % kMix.size());
        const QSizeF pixels = nominalPixelSize(size);
        const QRectF rect(random.bounded(5120.0 - pixels.width()),
                          random.bounded(2880.0 - pixels.height()), pixels.width(),
                          pixels.height());
        tiles.append({QUuid::createUuid(), size, rect});
    }
    return tiles;
}

QList<QRectF> rectsOf(const QList<DropDecision::Tile>& tiles) {
    QList<QRectF> rects;
    for (const auto& tile : tiles) {
        rects.append(tile.rect);
    }
    return rects;
}

void BM_FreeSpot(benchmark::State& state) {
    const QList<QRectF> rects = rectsOf(state.range(0) == 0 ? packedTiles() : scatteredTiles());
    for (auto _ : state) {
        benchmark::DoNotOptimize(FreeSpot::find(QSizeF(204, 204), kFrame, rects));
    }
    state.SetLabel(state.range(0) == 0 ? "packed" : "scattered");
}
BENCHMARK(BM_FreeSpot)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

// The store's whole call: collecting the tiles of the screen from the layout, then the search.
void BM_GridStoreFreeSpot(benchmark::State& state) {
    QTemporaryDir dir;
    SystemClock clock;
    QtScheduler scheduler;
    const WidgetRegistry registry;
    const ScreenInfo screen{QStringLiteral("5k"), QStringLiteral("5K"), kFrame, kFrame, true};
    GridStore store({clock, scheduler, registry}, dir.filePath(QStringLiteral("grid.json")));
    GridLayout layout;
    for (const auto& tile : packedTiles()) {
        WidgetInstance instance;
        instance.kind = QStringLiteral("stocks");
        instance.size = tile.size;
        instance.posX = tile.rect.x();
        instance.posY = tile.rect.y() + tile.rect.height();
        layout.instances.append(instance);
    }
    store.replaceLayout(layout);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            store.freeSpot(QStringLiteral("clock"), WidgetSize::large, std::nullopt, screen));
    }
}
BENCHMARK(BM_GridStoreFreeSpot)->Unit(benchmark::kMicrosecond);

void BM_SnapAxis(benchmark::State& state) {
    QList<DesktopSnap::Range> neighbours;
    for (const auto& tile : scatteredTiles()) {
        neighbours.append({tile.rect.x(), tile.rect.x() + tile.rect.width()});
    }
    const DesktopSnap::Range bounds{0, 5120};
    double position = 1000.3;
    for (auto _ : state) {
        benchmark::DoNotOptimize(DesktopSnap::axis(position, 204, neighbours, bounds));
        position += 0.7;
    }
}
BENCHMARK(BM_SnapAxis)->Unit(benchmark::kNanosecond);

// A large tile dropped on a crowd: range 0 packed (the ring search finds a place), range 1
// scattered, range 2 a full screen (every search fails and the tile stays).
QList<QRectF> crowd(int kind) {
    if (kind == 2) {
        QList<QRectF> rects = rectsOf(packedTiles());
        rects.append(kFrame);
        return rects;
    }
    return rectsOf(kind == 0 ? packedTiles() : scatteredTiles());
}

void BM_Resolve(benchmark::State& state) {
    const QList<QRectF> avoiding = crowd(static_cast<int>(state.range(0)));
    const QRectF dropped(300, 2500, 204, 204);
    for (auto _ : state) {
        benchmark::DoNotOptimize(OverlapResolver::resolve(dropped, avoiding, kFrame, 16));
    }
    static const char* const labels[] = {"packed", "scattered", "full"};
    state.SetLabel(labels[state.range(0)]);
}
BENCHMARK(BM_Resolve)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

void BM_DropDecision(benchmark::State& state) {
    const QList<DropDecision::Tile> others = state.range(0) == 0 ? packedTiles() : scatteredTiles();
    const QRectF dropped(300, 2500, 204, 204);
    for (auto _ : state) {
        benchmark::DoNotOptimize(DropDecision::decide(WidgetSize::large, dropped, others, kFrame));
    }
    state.SetLabel(state.range(0) == 0 ? "packed" : "scattered");
}
BENCHMARK(BM_DropDecision)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

// 500 widgets of known kinds, half of them in stacks of five, many more than the logical grid
// holds, so the load has every healing step to do.
QByteArray bigGridFile() {
    static const QStringList kinds{QStringLiteral("stocks"), QStringLiteral("stickynote"),
                                   QStringLiteral("clock"), QStringLiteral("weather")};
    GridLayout layout;
    QUuid stack;
    for (int i = 0; i < 500; ++i) {
        WidgetInstance instance;
        instance.kind = kinds.at(i % kinds.size());
        instance.size = WidgetSize::wide;
        instance.order = i;
        instance.col = (i * 3) % 8;
        instance.row = (i * 7) % 10;
        instance.posX = (i % 40) * 120.0;
        instance.posY = 2800 - (i / 40) * 120.0;
        instance.settings =
            WidgetSettings{{QStringLiteral("note"), QStringLiteral("text %1").arg(i)}};
        if (i < 250) {
            if (i % 5 == 0) {
                stack = QUuid::createUuid();
            }
            instance.stackID = stack;
            instance.stackIndex = i % 5;
        }
        layout.instances.append(instance);
    }
    return layout.toJsonText();
}

void BM_LoadAndHeal500(benchmark::State& state) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("grid.json"));
    const QByteArray bytes = bigGridFile();
    SystemClock clock;
    QtScheduler scheduler;
    const WidgetRegistry registry;
    for (auto _ : state) {
        state.PauseTiming();
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
        file.close();
        state.ResumeTiming();
        GridStore store({clock, scheduler, registry}, path);
        benchmark::DoNotOptimize(store.layout().instances.size());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytes.size());
}
BENCHMARK(BM_LoadAndHeal500)->Unit(benchmark::kMillisecond);

// One save of 500 widgets: encoding, the checked atomic write with its sync, and the history.
void BM_Save500(benchmark::State& state) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("grid.json"));
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(bigGridFile());
    file.close();
    SystemClock clock;
    QtScheduler scheduler;
    const WidgetRegistry registry;
    GridStore store({clock, scheduler, registry}, path);
    for (auto _ : state) {
        store.save();
    }
}
BENCHMARK(BM_Save500)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
