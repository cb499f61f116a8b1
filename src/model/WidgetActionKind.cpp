#include "model/WidgetActionKind.h"

#include <array>

namespace tw {

namespace {

constexpr std::array<const char*, 4> rawValues{"none", "app", "url", "shortcut"};

} // namespace

QString rawValue(WidgetActionKind kind) {
    return QLatin1String(rawValues.at(static_cast<std::size_t>(kind)));
}

std::optional<WidgetActionKind> widgetActionKindFromRawValue(QStringView raw) {
    for (std::size_t i = 0; i < rawValues.size(); ++i) {
        if (raw == QLatin1String(rawValues.at(i))) {
            return static_cast<WidgetActionKind>(i);
        }
    }
    return std::nullopt;
}

} // namespace tw
