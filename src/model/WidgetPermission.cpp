#include "model/WidgetPermission.h"

#include "platform/RawValues.h"

namespace tw {

namespace {

constexpr RawValues<WidgetPermission, 6> rawValues{
    {"calendar", "reminders", "weather", "microphone", "camera", "accessibility"}};

} // namespace

QString rawValue(WidgetPermission permission) {
    return rawValues.of(permission);
}

std::optional<WidgetPermission> widgetPermissionFromRawValue(QStringView raw) {
    return rawValues.parse(raw);
}

} // namespace tw
