#include "faces/TileShape.h"

#include "model/WidgetMetadata.h"

namespace tw {

TileShape TileShape::of(const WidgetMetadata& metadata) {
    return {metadata.chromeless ? Chrome::None : Chrome::Glass,
            metadata.fullBleed ? Bleed::Full : Bleed::Padded};
}

} // namespace tw
