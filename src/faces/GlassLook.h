// How a tile's glass is drawn: frosted or clear, its strength, and light or dark.
#pragma once

namespace tw {

struct GlassLook {
    // Frosted is milky and mostly opaque; clear lets most of the desktop through. The liquid lens
    // has a renderer of its own; a tile without its picture draws frosted.
    enum class Finish { Frosted, Clear };
    // The tint resolved against the system's appearance: smoked dark or milky light glass.
    enum class Shade { Dark, Light };

    Finish finish = Finish::Frosted;
    // "tarnwick.glassStrength", 0...1: how much of the desktop the glass lets through.
    double strength = 0;
    Shade shade = Shade::Dark;

    bool operator==(const GlassLook&) const = default;
};

} // namespace tw
