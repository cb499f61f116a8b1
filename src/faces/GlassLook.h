// How a tile's glass is drawn: frosted or clear, its strength, and light or dark.
#pragma once

#include "look/ThemeStore.h"

namespace tw {

struct GlassLook {
    // Frosted is milky and mostly opaque; clear lets most of the desktop through. The liquid lens
    // has a renderer of its own; a tile without its picture draws frosted.
    enum class Finish { Frosted, Clear, Liquid };
    // The tint resolved against the system's appearance: smoked dark or milky light glass.
    enum class Shade { Dark, Light };

    Finish finish = Finish::Frosted;
    // "tarnwick.glassStrength", 0...1: how much of the desktop the glass lets through.
    double strength = 0;
    Shade shade = Shade::Dark;
    // What shows through is bright (a liquid lens over a light picture): content then takes
    // the dark ink of light glass, whatever the shade.
    bool brightBehind = false;

    // Whether content on this glass is drawn in dark ink.
    bool darkInk() const { return shade == Shade::Light || brightBehind; }

    bool operator==(const GlassLook&) const = default;

    // The store's glass on a system of the given appearance.
    static GlassLook from(const ThemeStore& store, ThemeStore::SystemAppearance system);
};

} // namespace tw
