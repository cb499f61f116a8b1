#include "app/LaunchModes.h"
#include "app/SnapshotWidgetOptions.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/GallerySheet.h"
#include "faces/TileRenderer.h"
#include "platform/linux/MaterialSymbolProvider.h"
#include "tick/SnapshotClock.h"

#include <QImage>

namespace tw {

std::optional<int> runSnapshotGalleryMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    const MaterialSymbolProvider symbols;
    const FaceRegistry faces;
    TileRenderer renderer;
    const QImage sheet =
        GallerySheet::render(faces, renderer, options.baseContext(symbols, context.clock.now()));
    const bool ok = sheet.save(path, "PNG");
    context.out << "snapshot-gallery ok=" << (ok ? "true" : "false") << " path=" << path << '\n';
    return ok ? 0 : 1;
}

} // namespace tw
