// One sensor reading and one battery reading of the files, as a desktop with a few hwmon chips
// gives them: what a tile on screen costs every three seconds, and the power fallback every 30.
#include "platform/linux/HwmonSensorSource.h"
#include "platform/linux/PowerSupply.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

void write(const QString& path, const QByteArray& value) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(value + '\n');
    }
}

// acpitz, coretemp with a package and 8 cores, an nvme disk, a super-I/O chip with 7
// temperatures and 5 fans, a graphics card; mains and one battery.
bool writeDesktopTree(const QString& root) {
    const QString hwmon = root + QStringLiteral("/class/hwmon/hwmon");
    const struct {
        const char* name;
        int temperatures;
        int fans;
    } chips[] = {
        {"acpitz", 1, 0}, {"coretemp", 9, 0}, {"nvme", 3, 0}, {"nct6775", 7, 5}, {"amdgpu", 1, 1}};
    int number = 0;
    for (const auto& chip : chips) {
        const QString base = hwmon + QString::number(number++) + QLatin1Char('/');
        write(base + QStringLiteral("name"), chip.name);
        for (int i = 1; i <= chip.temperatures; ++i) {
            const QString prefix = base + QStringLiteral("temp%1_").arg(i);
            write(prefix + QStringLiteral("input"), QByteArray::number(40000 + i * 500));
            write(prefix + QStringLiteral("label"), "Core " + QByteArray::number(i));
        }
        for (int i = 1; i <= chip.fans; ++i) {
            write(base + QStringLiteral("fan%1_input").arg(i), "1200");
        }
    }
    const QString supplies = root + QStringLiteral("/class/power_supply/");
    write(supplies + QStringLiteral("AC/type"), "Mains");
    write(supplies + QStringLiteral("AC/online"), "0");
    for (const char* name : {"type=Battery", "status=Discharging", "capacity=64",
                             "energy_now=32000000", "energy_full=50000000", "power_now=9000000"}) {
        const QByteArray entry(name);
        const qsizetype equals = entry.indexOf('=');
        write(supplies + QStringLiteral("BAT0/") + QString::fromLatin1(entry.left(equals)),
              entry.mid(equals + 1));
    }
    return true;
}

QString desktopTree() {
    static QTemporaryDir dir;
    static const bool written = writeDesktopTree(dir.path());
    return written ? dir.path() : QString();
}

void hwmonRead(benchmark::State& state) {
    const tw::HwmonSensorSource source(desktopTree());
    for (auto _ : state) {
        benchmark::DoNotOptimize(source.read());
    }
}
BENCHMARK(hwmonRead);

void powerSupplyRead(benchmark::State& state) {
    const QString root = desktopTree();
    for (auto _ : state) {
        benchmark::DoNotOptimize(tw::batteryFromSupplies(tw::PowerSupply::readAll(root)));
    }
}
BENCHMARK(powerSupplyRead);

} // namespace

BENCHMARK_MAIN();
