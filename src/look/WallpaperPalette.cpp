#include "look/WallpaperPalette.h"

#include "text/L.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tw {

namespace {

constexpr int kBins = 12;

ThemeColor color(const WallpaperPalette::RGB& c, double opacity) {
    return {c.r, c.g, c.b, opacity};
}

} // namespace

WallpaperPalette::HSB WallpaperPalette::hsb(const RGB& c) {
    const double max = std::max({c.r, c.g, c.b});
    const double min = std::min({c.r, c.g, c.b});
    const double delta = max - min;
    HSB out{0, max > 0 ? delta / max : 0, max};
    if (delta > 0) {
        double h = 0;
        if (max == c.r) {
            h = std::fmod((c.g - c.b) / delta, 6.0);
        } else if (max == c.g) {
            h = (c.b - c.r) / delta + 2;
        } else {
            h = (c.r - c.g) / delta + 4;
        }
        h /= 6;
        out.h = h < 0 ? h + 1 : h;
    }
    return out;
}

WallpaperPalette::RGB WallpaperPalette::rgb(double h, double s, double b) {
    const double sector = std::fmod(std::max(h, 0.0), 1.0) * 6;
    const int i = static_cast<int>(std::floor(sector));
    const double f = sector - i;
    const double p = b * (1 - s);
    const double q = b * (1 - s * f);
    const double t = b * (1 - s * (1 - f));
    switch (i % 6) {
    case 0:
        return {b, t, p};
    case 1:
        return {q, b, p};
    case 2:
        return {p, b, t};
    case 3:
        return {p, q, b};
    case 4:
        return {t, p, b};
    default:
        return {b, p, q};
    }
}

int WallpaperPalette::bin(double hue) {
    return std::clamp(static_cast<int>(hue * kBins), 0, kBins - 1);
}

Theme WallpaperPalette::theme(const QList<RGB>& pixels) {
    struct Bin {
        double weight = 0;
        RGB sum;
        int count = 0;
    };
    std::array<Bin, kBins> bins{};
    for (const RGB& pixel : pixels) {
        const HSB c = hsb(pixel);
        if (!counts(c)) {
            continue;
        }
        Bin& bin = bins.at(static_cast<size_t>(WallpaperPalette::bin(c.h)));
        bin.weight += c.b * c.s;
        bin.sum = {bin.sum.r + pixel.r, bin.sum.g + pixel.g, bin.sum.b + pixel.b};
        ++bin.count;
    }
    // The first of the heaviest wins a tie.
    const Bin& winner = *std::max_element(
        bins.cbegin(), bins.cend(), [](const Bin& a, const Bin& b) { return a.weight < b.weight; });
    double hue = 0.6;
    double accentSaturation = 0.8;
    double surfaceSaturation = 0.2;
    if (winner.weight > 0 && winner.count >= 1) {
        const double n = winner.count;
        hue = hsb({winner.sum.r / n, winner.sum.g / n, winner.sum.b / n}).h;
        accentSaturation = 0.68;
        surfaceSaturation = 0.45;
    }
    const ThemeColor white = ThemeColor::hex(u"#FFFFFF");
    auto withOpacity = [](ThemeColor c, double opacity) {
        c.opacity = opacity;
        return c;
    };
    // The opacities of the dark built-in themes.
    const Theme& dark = Theme::defaultTheme();
    return {
        .id = QString::fromLatin1(themeID),
        .name = L("theme.fromWallpaper", QStringLiteral("Match my wallpaper")),
        .accent = color(rgb(hue, accentSaturation, 0.95), 1.0),
        .surface = color(rgb(hue, surfaceSaturation, 0.1), dark.surface.opacity),
        .surfaceElevated = withOpacity(white, dark.surfaceElevated.opacity),
        .textPrimary = color(rgb(hue, 0.1, 1.0), dark.textPrimary.opacity),
        .textSecondary = withOpacity(white, dark.textSecondary.opacity),
        .separator = withOpacity(white, dark.separator.opacity),
    };
}

} // namespace tw
