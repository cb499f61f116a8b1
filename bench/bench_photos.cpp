// The photo tile's one costly step: a 24-megapixel picture (6000 × 4000) read straight to a
// tile's pixels, as JPEG (scaled while decoding) and as PNG (decoded whole, then scaled), on the
// worker thread the tile uses, measured from the request to the picture back on the main
// thread. The whole-decode row is what reading without a scaled size would cost.
#include "files/PhotoDecoder.h"
#include "readings/PoolSampleRunner.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace tw;

QString picture(const char* format) {
    static QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("photo.") + QLatin1String(format));
    if (!QFile::exists(path)) {
        // A picture with detail everywhere, so that neither format compresses it to nothing.
        QImage image(6000, 4000, QImage::Format_RGB32);
        QPainter painter(&image);
        QLinearGradient sky(0, 0, 6000, 4000);
        sky.setColorAt(0, QColor(40, 70, 140));
        sky.setColorAt(1, QColor(240, 160, 110));
        painter.fillRect(image.rect(), sky);
        for (int i = 0; i < 4000; ++i) {
            painter.setPen(QColor::fromHsv(i % 360, 120, 200));
            painter.drawLine((i * 37) % 6000, (i * 53) % 4000, (i * 91) % 6000, (i * 17) % 4000);
        }
        painter.end();
        image.save(path, format, 90);
    }
    return path;
}

// The grand tile (420 × 312 points) on a display at twice the density.
const QSize tilePixels(840, 624);

void decodeOffThread(benchmark::State& state, const char* format) {
    const QString path = picture(format);
    PoolSampleRunner runner;
    QObject context;
    for (auto _ : state) {
        QEventLoop loop;
        QSize got;
        runSample(
            runner, &context, [&path] { return PhotoDecoder::decode(path, tilePixels); },
            [&](const PhotoDecoder::Result& result) {
                got = result.image.size();
                loop.quit();
            });
        loop.exec();
        if (got != tilePixels) {
            state.SkipWithError("the picture did not decode");
        }
    }
}

void jpegToTile(benchmark::State& state) {
    decodeOffThread(state, "jpg");
}

void pngToTile(benchmark::State& state) {
    decodeOffThread(state, "png");
}

void jpegWhole(benchmark::State& state) {
    const QString path = picture("jpg");
    for (auto _ : state) {
        QImageReader reader(path);
        QImage image = reader.read();
        benchmark::DoNotOptimize(image);
    }
}

BENCHMARK(jpegToTile)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(pngToTile)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(jpegWhole)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
