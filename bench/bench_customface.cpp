// The cost of drawing a custom widget's tile: one large tile whose ten rows hold 50 tokens
// (readings, times and document values), drawn whole at a pixel ratio of 2 from a live board,
// the time moving a minute a frame so that no text repeats; and each template at its largest size.
#include "custom/CustomBoard.h"
#include "custom/CustomWidgetTemplates.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/TileRenderer.h"
#include "look/Theme.h"
#include "platform/linux/MaterialSymbolProvider.h"

#include <QGuiApplication>
#include <QImage>
#include <QLoggingCategory>
#include <QPainter>

#include <benchmark/benchmark.h>
#include <cmath>

namespace {

using namespace tw;

const QDateTime kStart(QDate(2026, 11, 22), QTime(10, 9));

// Ten rows of five tokens each, in every element that reads text.
CustomWidgetDefinition fiftyTokens() {
    CustomWidgetDefinition d;
    d.name = QStringLiteral("Fifty");
    d.sizes = {WidgetSize::large};
    CustomSource source;
    source.url = QStringLiteral("https://example.com/a.json");
    d.source = source;
    const QString tokens =
        QStringLiteral("{cpu} {ram} {time:HH:mm} {data:value} {data:bitcoin.usd}");
    for (int i = 0; i < 10; ++i) {
        CustomElement element;
        element.type = i % 2 == 0 ? CustomElementType::text : CustomElementType::value;
        element.text = tokens;
        element.style = i == 0 ? CustomTextStyle::title : CustomTextStyle::caption;
        CustomRow row;
        row.elements = {element};
        d.rows << row;
    }
    return d.sanitized();
}

QImage panelImage(const QSizeF& tile) {
    QImage image(
        QSize(static_cast<int>(std::ceil((tile.width() + 2 * TileRenderer::panelMargin) * 2)),
              static_cast<int>(std::ceil((tile.height() + 2 * TileRenderer::panelMargin) * 2))),
        QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    return image;
}

void drawCustom(benchmark::State& state, const CustomWidgetDefinition& definition, WidgetSize size,
                SurfaceFlags surface) {
    const MaterialSymbolProvider symbols;
    const FaceRegistry faces;
    TileRenderer renderer;
    CustomBoard board;
    board.definitions.insert(definition.kind(), definition);
    CustomSourceState fetched;
    fetched.json = CustomJSON::preview();
    for (const CustomSource& source : definition.allSources()) {
        board.sources.insert(source.cacheKey(), fetched);
    }
    WidgetMetadata metadata;
    metadata.kind = definition.kind();
    metadata.displayName = definition.name;
    metadata.symbol = definition.symbol;
    metadata.allowedSizes = definition.sizes;
    FaceContext context = FaceContext::forKind(metadata, size);
    context.theme = Theme::defaultTheme();
    context.devicePixelRatio = 2;
    context.surface = surface;
    context.symbols = &symbols;
    context.custom = &board;
    const WidgetFace& face = faces.face(metadata.kind);
    QImage image = panelImage(context.points);
    const QRectF tile(QPointF(TileRenderer::panelMargin, TileRenderer::panelMargin),
                      context.points);
    qint64 minute = 0;
    for (auto _ : state) {
        context.now = kStart.addSecs(60 * ++minute);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.paint(painter, tile, face, context);
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    benchmark::RegisterBenchmark("customface/50-tokens/large@2x", drawCustom, fiftyTokens(),
                                 WidgetSize::large, SurfaceFlags::desktop())
        ->Unit(benchmark::kMicrosecond)
        ->Repetitions(9)
        ->ReportAggregatesOnly(true);
    for (const CustomWidgetTemplates::Template& entry : CustomWidgetTemplates::all()) {
        const CustomWidgetDefinition definition = entry.make();
        const WidgetSize size = definition.largestSize();
        const std::string name = "customface/template/" + entry.id.toStdString() + "/" +
                                 rawValue(size).toStdString() + "@2x";
        benchmark::RegisterBenchmark(name.c_str(), drawCustom, definition, size,
                                     SurfaceFlags::snapshot())
            ->Unit(benchmark::kMicrosecond);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
