// Whether a kind's tile has glass and padding: chromeless kinds draw no tile, full-bleed kinds
// reach its edges.
#pragma once

namespace tw {

struct WidgetMetadata;

struct TileShape {
    enum class Chrome { Glass, None };
    enum class Bleed { Padded, Full };

    Chrome chrome = Chrome::Glass;
    Bleed bleed = Bleed::Padded;

    static TileShape of(const WidgetMetadata& metadata);

    bool operator==(const TileShape&) const = default;
};

} // namespace tw
