// The six groups in which the gallery shows the widget kinds.
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <array>
#include <optional>

namespace tw {

enum class WidgetCategory { essentials, system, workspace, time, tools, ambient };

inline constexpr std::array<WidgetCategory, 6> allWidgetCategories{
    WidgetCategory::essentials, WidgetCategory::system, WidgetCategory::workspace,
    WidgetCategory::time,       WidgetCategory::tools,  WidgetCategory::ambient};

// The id: "essentials", …, "ambient".
QString rawValue(WidgetCategory category);
std::optional<WidgetCategory> widgetCategoryFromRawValue(QStringView raw);
// Localised: "cat.<id>".
QString title(WidgetCategory category);
QString symbol(WidgetCategory category);

// The built-in kinds of a category, in catalogue order.
QStringList widgetCategoryMembers(WidgetCategory category);
// The category that lists `kind`; tools for any other kind, custom ones included.
WidgetCategory widgetCategoryOf(const QString& kind);

} // namespace tw
