// A theme from the colours of a picture: the hue that carries most vivid light names the accent,
// a deep surface and a pale text of the same hue. Dark and grey pixels say nothing.
#pragma once

#include "look/Theme.h"

#include <QList>

namespace tw {

class WallpaperPalette {
public:
    WallpaperPalette() = delete;

    struct RGB {
        double r = 0;
        double g = 0;
        double b = 0;
        bool operator==(const RGB&) const = default;
    };
    struct HSB {
        double h = 0; // 0...1
        double s = 0;
        double b = 0;
    };

    // The side of the square sample the picture is reduced to before it is read.
    static constexpr int sampleSide = 40;
    // What the generated theme is called.
    static constexpr const char* themeID = "wallpaper";

    static HSB hsb(const RGB& color);
    // Whether a pixel says something about the picture's colour: bright and saturated enough.
    static bool counts(const HSB& color) { return color.b > 0.3 && color.s > 0.22; }
    // The hue bin of twelve a hue falls in.
    static int bin(double hue);
    static RGB rgb(double h, double s, double b);
    static Theme theme(const QList<RGB>& pixels);
};

} // namespace tw
