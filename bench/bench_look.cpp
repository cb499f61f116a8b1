// A theme from the desktop's picture: a 4K picture reduced to the palette's square sample, and
// the theme read from that sample.
#include "look/WallpaperPalette.h"

#include <QColor>
#include <QImage>
#include <QList>

#include <benchmark/benchmark.h>

namespace {

using namespace tw;

// Vivid bands of every hue over a dark ground, so that many pixels count and fill many bins.
QImage picture() {
    QImage image(3840, 2160, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            line[x] = (y / 90) % 3 == 0 ? qRgb(20, 22, 30)
                                        : QColor::fromHsv((x / 16) % 360, 200, 230).rgb();
        }
    }
    return image;
}

QList<WallpaperPalette::RGB> sample(const QImage& image) {
    const QImage small = image
                             .scaled(WallpaperPalette::sampleSide, WallpaperPalette::sampleSide,
                                     Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                             .convertToFormat(QImage::Format_RGB32);
    QList<WallpaperPalette::RGB> pixels;
    pixels.reserve(static_cast<qsizetype>(small.width()) * small.height());
    for (int y = 0; y < small.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(small.constScanLine(y));
        for (int x = 0; x < small.width(); ++x) {
            pixels.append({qRed(line[x]) / 255.0, qGreen(line[x]) / 255.0, qBlue(line[x]) / 255.0});
        }
    }
    return pixels;
}

// The picture smoothly scaled to the sample and read into the palette's colours.
void reduction(benchmark::State& state) {
    const QImage image = picture();
    for (auto _ : state) {
        benchmark::DoNotOptimize(sample(image));
    }
}

void theme(benchmark::State& state) {
    const QList<WallpaperPalette::RGB> pixels = sample(picture());
    for (auto _ : state) {
        benchmark::DoNotOptimize(WallpaperPalette::theme(pixels));
    }
}

} // namespace

BENCHMARK(reduction)->Name("palette/sample/3840x2160-to-40x40")->Unit(benchmark::kMillisecond);
BENCHMARK(theme)->Name("palette/theme/40x40")->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
