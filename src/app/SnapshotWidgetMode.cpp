#include "app/LaunchModes.h"
#include "app/SnapshotWidgetOptions.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/TileRenderer.h"
#include "model/WidgetRegistry.h"
#include "platform/linux/MaterialSymbolProvider.h"
#include "tick/SnapshotClock.h"

#include <QImage>

namespace tw {

std::optional<int> runSnapshotWidgetMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    const std::optional<WidgetDefinition> definition = WidgetRegistry().definition(options.kind);
    std::optional<WidgetSize> size;
    if (definition) {
        size = options.size.isEmpty() ? std::optional(definition->metadata.defaultSize)
                                      : widgetSizeFromRawValue(options.size);
        if (size && !definition->metadata.allowedSizes.contains(*size)) {
            size.reset();
        }
    }
    bool ok = false;
    if (definition && size) {
        const MaterialSymbolProvider symbols;
        const FaceRegistry faces;
        TileRenderer renderer;
        WidgetInstance instance;
        instance.kind = options.kind;
        instance.size = *size;
        instance.settings = options.settings;
        const FaceContext sized = FaceContext::forInstance(definition->metadata, instance);
        FaceContext face = options.baseContext(symbols, context.clock.now());
        face.metadata = sized.metadata;
        face.size = sized.size;
        face.points = sized.points;
        face.scale = sized.scale;
        face.settings = sized.settings;
        ok = renderer.picture(faces.face(face.kind()), face).save(path, "PNG");
    }
    context.out << "snapshot-widget ok=" << (ok ? "true" : "false") << " path=" << path
                << " kind=" << options.kind << " size=" << (size ? rawValue(*size) : options.size)
                << '\n';
    return ok ? 0 : 1;
}

} // namespace tw
