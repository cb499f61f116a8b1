#include "model/WidgetSize.h"

#include "model/Metrics.h"
#include "settings/L.h"

namespace tw {

namespace {

struct SizeFacts {
    const char* raw;
    int columns;
    int rows;
    const char* labelKey;
    const char* labelFallback;
};

// Indexed by the enumeration's value.
constexpr std::array<SizeFacts, 9> facts{{
    {"small", 1, 1, "size.small", "Small (1×1)"},
    {"tall", 1, 2, "size.tall", "Tall (1×2)"},
    {"wide", 2, 1, "size.wide", "Wide (2×1)"},
    {"large", 2, 2, "size.large", "Large (2×2)"},
    {"banner", 3, 1, "size.banner", "Banner (3×1)"},
    {"wideTall", 3, 2, "size.wideTall", "Big (3×2)"},
    {"huge", 3, 3, "size.huge", "Huge (3×3)"},
    {"panorama", 4, 2, "size.panorama", "Panorama (4×2)"},
    {"grand", 4, 3, "size.grand", "Grand (4×3)"},
}};

const SizeFacts& factsOf(WidgetSize size) {
    return facts.at(static_cast<std::size_t>(size));
}

double sideInPoints(int cells) {
    return cells * Metrics::cellSize + (cells - 1) * Metrics::cellSpacing;
}

} // namespace

QString rawValue(WidgetSize size) {
    return QLatin1String(factsOf(size).raw);
}

std::optional<WidgetSize> widgetSizeFromRawValue(QStringView raw) {
    for (const WidgetSize size : allWidgetSizes) {
        if (raw == QLatin1String(factsOf(size).raw)) {
            return size;
        }
    }
    return std::nullopt;
}

int columns(WidgetSize size) {
    return factsOf(size).columns;
}

int rows(WidgetSize size) {
    return factsOf(size).rows;
}

int cellCount(WidgetSize size) {
    return columns(size) * rows(size);
}

QString spanHint(WidgetSize size) {
    return QString::number(columns(size)) + QChar(0x00D7) + QString::number(rows(size));
}

QString label(WidgetSize size) {
    const SizeFacts& f = factsOf(size);
    return L(f.labelKey, QString::fromUtf8(f.labelFallback));
}

QSizeF nominalPixelSize(WidgetSize size) {
    return {sideInPoints(columns(size)), sideInPoints(rows(size))};
}

} // namespace tw
