// What a click on a widget does: nothing, open an application, open an address, run a shortcut.
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace tw {

enum class WidgetActionKind { none, app, url, shortcut };

// "none", "app", "url", "shortcut": the value of the settings key "clickAction".
QString rawValue(WidgetActionKind kind);
std::optional<WidgetActionKind> widgetActionKindFromRawValue(QStringView raw);

} // namespace tw
