#include "faces/GlassLook.h"

#include <algorithm>

namespace tw {

GlassLook GlassLook::from(const ThemeStore& store, ThemeStore::SystemAppearance system) {
    GlassLook look;
    look.finish = store.glassStyle() == ThemeStore::GlassStyle::Clear    ? Finish::Clear
                  : store.glassStyle() == ThemeStore::GlassStyle::Liquid ? Finish::Liquid
                                                                         : Finish::Frosted;
    look.strength = std::clamp(store.glassStrength(), 0.0, 1.0);
    look.shade =
        ThemeStore::prefersLightGlass(store.glassTint(), system) ? Shade::Light : Shade::Dark;
    return look;
}

} // namespace tw
