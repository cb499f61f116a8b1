// What one lens picture depends on besides the backdrop: its size, pixel density, corners and tint.
#pragma once

#include <QSizeF>

namespace tw {

struct LiquidGlassParams {
    QSizeF size;        // points
    double scale = 2.0; // pixels per point
    double cornerRadius = 18.0;
    double frost = 0.0; // 0...1, the blur amount
    bool lightGlass = false;
    bool focused = false;

    friend bool operator==(const LiquidGlassParams&, const LiquidGlassParams&) = default;
};

} // namespace tw
