// What a widget kind needs the user's permission for.
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace tw {

enum class WidgetPermission { calendar, reminders, weather, microphone, camera, accessibility };

// The case name: "calendar", …, "accessibility".
QString rawValue(WidgetPermission permission);
std::optional<WidgetPermission> widgetPermissionFromRawValue(QStringView raw);

} // namespace tw
