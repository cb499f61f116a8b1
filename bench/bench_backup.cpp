// The layout file of a 200-tile setup out and back, and the backup check at launch when nothing
// changed: what a person waits for at "Export" and "Import", and what every start costs.
#include "backup/AutoBackup.h"
#include "backup/LayoutBackup.h"
#include "backup/LayoutShare.h"
#include "model/GridLayout.h"
#include "platform/AtomicFile.h"
#include "platform/null/MemoryDefaults.h"

#include <QDir>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace tw;

// 200 tiles in rows, settings as real ones carry, and the other data files at plausible sizes.
void writeSetup(const QString& directory, MemoryDefaults& defaults) {
    GridLayout layout;
    for (int i = 0; i < 200; ++i) {
        WidgetInstance instance;
        instance.kind = i % 2 ? QStringLiteral("clock") : QStringLiteral("weather");
        instance.size = WidgetSize::small;
        instance.order = i;
        instance.posX = 48 + (i % 40) * 108;
        instance.posY = 2800 - (i / 40) * 108;
        instance.settings = WidgetSettings{{QStringLiteral("style"), QStringLiteral("analog")},
                                           {QStringLiteral("tileScale"), QStringLiteral("1.0")}};
        layout.instances.append(instance);
    }
    layout.savedAt = QDateTime::currentDateTimeUtc();
    const QDir dir(directory);
    AtomicFile::write(dir.filePath(QStringLiteral("grid.json")), layout.toJsonText());
    for (const QString& name : LayoutBackup::dataFileNames().mid(1)) {
        AtomicFile::write(dir.filePath(name), QByteArray(16 * 1024, 'x'));
    }
    for (int i = 0; i < 60; ++i) {
        defaults.setValue(QStringLiteral("tarnwick.key%1").arg(i), i);
    }
}

struct Setup {
    Setup() {
        QLoggingCategory::setFilterRules(QStringLiteral("*.info=false"));
        writeSetup(dir.path(), defaults);
    }
    LayoutBackup::Setup setup() {
        return {.directory = dir.path(), .defaults = defaults, .appVersion = QStringLiteral("0")};
    }
    QTemporaryDir dir;
    MemoryDefaults defaults;
};

void BM_ExportSetup200(benchmark::State& state) {
    Setup fixture;
    qint64 bytes = 0;
    for (auto _ : state) {
        const QByteArray encoded = LayoutBackup::encode(LayoutBackup::makeSnapshot(
            fixture.setup(), QDateTime::currentDateTime(), LayoutBackup::Wallpapers::included));
        bytes = encoded.size();
        benchmark::DoNotOptimize(encoded.data());
    }
    state.counters["file_bytes"] = double(bytes);
}
BENCHMARK(BM_ExportSetup200)->Unit(benchmark::kMillisecond);

// Decoding and the staged, committed restore, fsyncs included.
void BM_ImportSetup200(benchmark::State& state) {
    Setup fixture;
    const QByteArray file = LayoutBackup::encode(LayoutBackup::makeSnapshot(
        fixture.setup(), QDateTime::currentDateTime(), LayoutBackup::Wallpapers::included));
    for (auto _ : state) {
        const LayoutBackup::Decoded decoded = LayoutBackup::decode(file);
        benchmark::DoNotOptimize(
            LayoutBackup::apply(std::get<LayoutBackup::Snapshot>(decoded), fixture.setup()));
    }
}
BENCHMARK(BM_ImportSetup200)->Unit(benchmark::kMillisecond);

// A backup two days old of the same setup: the check reads it, fingerprints both and writes
// nothing.
void BM_BackupCheckUnchanged(benchmark::State& state) {
    Setup fixture;
    AutoBackup backup(fixture.setup());
    const QDateTime now = QDateTime::currentDateTime();
    backup.runIfDue(now.addDays(-2), AutoBackup::Force::yes);
    for (auto _ : state) {
        if (backup.runIfDue(now)) {
            state.SkipWithError("an unchanged setup was backed up");
        }
    }
}
BENCHMARK(BM_BackupCheckUnchanged)->Unit(benchmark::kMillisecond);

void BM_BoardRoundTrip200(benchmark::State& state) {
    Setup fixture;
    const GridLayout layout = *GridLayout::fromJsonText(
        LayoutBackup::makeSnapshot(fixture.setup(), QDateTime::currentDateTime(),
                                   LayoutBackup::Wallpapers::excluded)
            .files.value(QStringLiteral("grid.json")));
    for (auto _ : state) {
        const Board::Decoded board =
            LayoutShare::makeBoard(QStringLiteral("b"), layout.instances, QRectF(0, 0, 5120, 2880),
                                   std::nullopt, QStringLiteral("0"), QDateTime::currentDateTime());
        benchmark::DoNotOptimize(Board::decode(std::get<Board>(board).encode()));
    }
}
BENCHMARK(BM_BoardRoundTrip200)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
