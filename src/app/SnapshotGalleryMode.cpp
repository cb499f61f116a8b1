#include "app/LaunchModes.h"
#include "app/SnapshotWidgetOptions.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/GallerySheet.h"
#include "faces/TileRenderer.h"
#include "platform/PlatformServices.h"
#include "tick/SnapshotClock.h"

#include <QImage>
#include <QImageWriter>

namespace tw {

std::optional<int> runSnapshotGalleryMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QString problem = options.problem;
    if (problem.isEmpty()) {
        const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
        const FaceRegistry faces;
        TileRenderer renderer;
        QImageWriter writer(path, "PNG");
        if (!writer.write(GallerySheet::render(
                faces, renderer, options.baseContext(*symbols, context.clock.now())))) {
            problem = QStringLiteral("cannot write %1: %2.").arg(path, writer.errorString());
        }
    }
    const bool ok = problem.isEmpty();
    context.out << "snapshot-gallery ok=" << (ok ? "true" : "false") << " path=" << path << '\n';
    if (!ok) {
        context.err << "tarnwick: " << problem << '\n';
    }
    return ok ? 0 : 1;
}

} // namespace tw
