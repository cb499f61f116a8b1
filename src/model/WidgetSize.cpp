#include "model/WidgetSize.h"

#include "model/Metrics.h"
#include "platform/RawValues.h"
#include "text/L.h"

namespace tw {

namespace {

constexpr RawValues<WidgetSize, 9> rawValues{
    {"small", "tall", "wide", "large", "banner", "wideTall", "huge", "panorama", "grand"}};

struct SizeFacts {
    int columns;
    int rows;
    const char* labelKey;
    const char* labelFallback;
};

// Indexed by the enumeration's value.
constexpr std::array<SizeFacts, 9> facts{{
    {1, 1, "size.small", "Small (1×1)"},
    {1, 2, "size.tall", "Tall (1×2)"},
    {2, 1, "size.wide", "Wide (2×1)"},
    {2, 2, "size.large", "Large (2×2)"},
    {3, 1, "size.banner", "Banner (3×1)"},
    {3, 2, "size.wideTall", "Big (3×2)"},
    {3, 3, "size.huge", "Huge (3×3)"},
    {4, 2, "size.panorama", "Panorama (4×2)"},
    {4, 3, "size.grand", "Grand (4×3)"},
}};

const SizeFacts& factsOf(WidgetSize size) {
    return facts.at(static_cast<std::size_t>(size));
}

double sideInPoints(int cells) {
    return cells * Metrics::cellSize + (cells - 1) * Metrics::cellSpacing;
}

} // namespace

QString rawValue(WidgetSize size) {
    return rawValues.of(size);
}

std::optional<WidgetSize> widgetSizeFromRawValue(QStringView raw) {
    return rawValues.parse(raw);
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
