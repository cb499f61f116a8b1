#include "app/LaunchModes.h"
#include "app/PictureReadings.h"
#include "app/PictureWeather.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/GallerySheet.h"
#include "faces/TileRenderer.h"
#include "market/MarketSample.h"
#include "model/WidgetRegistry.h"
#include "platform/PlatformServices.h"
#include "tick/SnapshotClock.h"

#include <QImage>

namespace tw {

namespace {

// What the faces on the sheet show, each at every size its kind allows.
ReadingFeeds sheetFeeds(const FaceRegistry& faces) {
    const WidgetRegistry registry;
    ReadingFeeds feeds;
    for (const QString& kind : faces.kinds()) {
        if (const auto definition = registry.definition(kind)) {
            for (const WidgetSize size : definition->metadata.allowedSizes) {
                feeds |= faces.face(kind).feeds(size, {});
            }
        }
    }
    return feeds;
}

} // namespace

std::optional<int> runSnapshotGalleryMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QImage picture;
    if (options.problem.isEmpty()) {
        const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
        const FaceRegistry faces;
        TileRenderer renderer;
        FaceContext base = options.baseContext(*symbols, context.clock.now());
        const ReadingsBoard readings = pictureReadings(sheetFeeds(faces));
        base.readings = &readings;
        const WeatherBoard weather = pictureWeather({}, base.now);
        base.weather = &weather;
        const MarketBoard market = sampleMarket(base.now);
        base.market = &market;
        const QStringList kinds = context.arguments.value(QStringLiteral("--kinds"))
                                      .value_or(QString())
                                      .split(QLatin1Char(','), Qt::SkipEmptyParts);
        picture = GallerySheet::render(faces, renderer, base, kinds);
    }
    return reportSnapshot(context, QStringLiteral("snapshot-gallery"), path, picture,
                          options.problem, QString());
}

} // namespace tw
