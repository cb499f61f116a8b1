// Layout capture and resolution for a full desk (60 widgets on 3 displays), and the whole path a
// settled display change takes through the topology memory, files included.
#include "displays/LayoutProfileResolver.h"
#include "displays/ScreenTopologyWatcher.h"
#include "displays/TopologyMemory.h"
#include "platform/QtScheduler.h"
#include "platform/SystemClock.h"
#include "platform/null/FixedDisplays.h"

#include <QLoggingCategory>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace tw;

LayoutDisplay screenAt(const QString& id, double x, double width, double height, bool isMain) {
    const LayoutDisplayRect frame{x, 0, width, height};
    return LayoutDisplay{id, id, frame, LayoutDisplayRect{x, 0, width, height - 25}, isMain};
}

const QList<LayoutDisplay> threeDisplays{
    screenAt(QStringLiteral("laptop"), 0, 1512, 982, true),
    screenAt(QStringLiteral("left"), -1920, 1920, 1080, false),
    screenAt(QStringLiteral("right"), 1512, 2560, 1440, false)};
const QList<LayoutDisplay> otherArrangement{
    screenAt(QStringLiteral("laptop"), 0, 1512, 982, true),
    screenAt(QStringLiteral("right"), -2560, 2560, 1440, false),
    screenAt(QStringLiteral("left"), 1512, 1920, 1080, false)};

// Twenty widgets per display in four groups of five, one group near each corner.
GridLayout desk() {
    GridLayout layout;
    int order = 0;
    for (const LayoutDisplay& display : threeDisplays) {
        const LayoutDisplayRect& vf = display.visibleFrame;
        for (int group = 0; group < 4; ++group) {
            const double baseX = group % 2 == 0 ? vf.x + 24 : vf.maxX() - 24 - 5 * 108;
            const double topY = group < 2 ? vf.maxY() - 24 : vf.y + 24 + 96;
            for (int i = 0; i < 5; ++i) {
                WidgetInstance widget;
                widget.kind = QStringLiteral("clock");
                widget.size = WidgetSize::small;
                widget.order = order++;
                widget.posX = baseX + i * 108;
                widget.posY = topY;
                layout.instances.append(widget);
            }
        }
    }
    return layout;
}

const QDateTime stamp = QDateTime::currentDateTimeUtc();

void snapshotCapturing(benchmark::State& state) {
    const GridLayout layout = desk();
    const auto homes = LayoutProfileResolver::snapshot(layout, threeDisplays, {}, stamp).placements;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            LayoutProfileResolver::snapshot(layout, threeDisplays, homes, stamp));
    }
    state.SetItemsProcessed(state.iterations() * layout.instances.size());
}
BENCHMARK(snapshotCapturing);

void snapshotCapturingFresh(benchmark::State& state) {
    const GridLayout layout = desk();
    for (auto _ : state) {
        benchmark::DoNotOptimize(LayoutProfileResolver::snapshot(layout, threeDisplays, {}, stamp));
    }
    state.SetItemsProcessed(state.iterations() * layout.instances.size());
}
BENCHMARK(snapshotCapturingFresh);

void remap(benchmark::State& state) {
    const GridLayout layout = desk();
    const auto placements =
        LayoutProfileResolver::snapshot(layout, threeDisplays, {}, stamp).placements;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            LayoutProfileResolver::remap(layout, placements, otherArrangement));
    }
    state.SetItemsProcessed(state.iterations() * layout.instances.size());
}
BENCHMARK(remap);

// Alternates between two arrangements, so every call does the whole work and writes the file.
void layoutForSettled(benchmark::State& state) {
    QTemporaryDir dir;
    SystemClock clock;
    QtScheduler scheduler;
    FixedDisplays displays;
    ScreenTopologyWatcher watcher(displays, scheduler);
    TopologyMemory memory(watcher, clock, dir.filePath(QStringLiteral("topology.json")));
    GridLayout current = desk();
    memory.remember(current, threeDisplays);
    bool other = true;
    for (auto _ : state) {
        const auto& target = other ? otherArrangement : threeDisplays;
        if (auto next = memory.layoutForSettled(target, current)) {
            current = std::move(*next);
        }
        other = !other;
    }
    state.SetItemsProcessed(state.iterations() * current.instances.size());
}
BENCHMARK(layoutForSettled)->Unit(benchmark::kMicrosecond);

// What every grid save costs on top of its own write: one capture and both files.
void remember(benchmark::State& state) {
    QTemporaryDir dir;
    SystemClock clock;
    QtScheduler scheduler;
    FixedDisplays displays;
    ScreenTopologyWatcher watcher(displays, scheduler);
    TopologyMemory memory(watcher, clock, dir.filePath(QStringLiteral("topology.json")));
    const GridLayout layout = desk();
    for (auto _ : state) {
        memory.remember(layout, threeDisplays);
    }
    state.SetItemsProcessed(state.iterations() * layout.instances.size());
}
BENCHMARK(remember)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    // One info line per settled change would drown the figures.
    QLoggingCategory::setFilterRules(QStringLiteral("Topology.info=false"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
