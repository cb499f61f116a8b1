#include "model/WidgetPermission.h"

#include <array>

namespace tw {

namespace {

constexpr std::array<const char*, 6> rawValues{"calendar",   "reminders", "weather",
                                               "microphone", "camera",    "accessibility"};

} // namespace

QString rawValue(WidgetPermission permission) {
    return QLatin1String(rawValues.at(static_cast<std::size_t>(permission)));
}

std::optional<WidgetPermission> widgetPermissionFromRawValue(QStringView raw) {
    for (std::size_t i = 0; i < rawValues.size(); ++i) {
        if (raw == QLatin1String(rawValues.at(i))) {
            return static_cast<WidgetPermission>(i);
        }
    }
    return std::nullopt;
}

} // namespace tw
