#include "app/LaunchModes.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/GallerySheet.h"
#include "faces/TileRenderer.h"
#include "platform/PlatformServices.h"
#include "tick/SnapshotClock.h"

#include <QImage>

namespace tw {

std::optional<int> runSnapshotGalleryMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QImage picture;
    if (options.problem.isEmpty()) {
        const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
        const FaceRegistry faces;
        TileRenderer renderer;
        picture = GallerySheet::render(faces, renderer,
                                       options.baseContext(*symbols, context.clock.now()));
    }
    return reportSnapshot(context, QStringLiteral("snapshot-gallery"), path, picture,
                          options.problem, QString());
}

} // namespace tw
