// The nine size classes of a tile and everything derived from them.
#pragma once

#include <QSizeF>
#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace tw {

// The order of the cases is the order of every size list and of the size report's columns.
enum class WidgetSize { small, tall, wide, large, banner, wideTall, huge, panorama, grand };

inline constexpr std::array<WidgetSize, 9> allWidgetSizes{
    WidgetSize::small, WidgetSize::tall,     WidgetSize::wide,
    WidgetSize::large, WidgetSize::banner,   WidgetSize::wideTall,
    WidgetSize::huge,  WidgetSize::panorama, WidgetSize::grand};

// The JSON form: "small", "tall", ..., "wideTall", ..., "grand".
QString rawValue(WidgetSize size);
// nullopt for anything but one of the nine raw values, compared exactly.
std::optional<WidgetSize> widgetSizeFromRawValue(QStringView raw);

int columns(WidgetSize size);
int rows(WidgetSize size);
int cellCount(WidgetSize size);
// Columns, "×", rows: "3×2".
QString spanHint(WidgetSize size);
// The localised name shown in size pickers ("size.wideTall" reads "Big (3×2)").
QString label(WidgetSize size);
// The tile's size in points at scale 1: n × 96 + (n − 1) × 12 on each side.
QSizeF nominalPixelSize(WidgetSize size);

} // namespace tw
