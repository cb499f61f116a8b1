#include "model/WidgetCategory.h"

#include "model/BuiltInWidget.h"
#include "platform/RawValues.h"
#include "text/L.h"

namespace tw {

namespace {

constexpr RawValues<WidgetCategory, 6> rawValues{
    {"essentials", "system", "workspace", "time", "tools", "ambient"}};

struct CategoryFacts {
    const char* titleKey;
    const char* titleDefault;
    const char* symbol;
};

// Indexed by the enumeration's value.
constexpr std::array<CategoryFacts, 6> facts{{
    {"cat.essentials", "Essentials", "star"},
    {"cat.system", "System", "cpu"},
    {"cat.workspace", "Workspace", "tray.full"},
    {"cat.time", "Time", "clock"},
    {"cat.tools", "Tools", "wrench.and.screwdriver"},
    {"cat.ambient", "Ambient", "sparkles"},
}};

const CategoryFacts& factsOf(WidgetCategory category) {
    return facts.at(static_cast<std::size_t>(category));
}

} // namespace

QString rawValue(WidgetCategory category) {
    return rawValues.of(category);
}

std::optional<WidgetCategory> widgetCategoryFromRawValue(QStringView raw) {
    return rawValues.parse(raw);
}

QString title(WidgetCategory category) {
    const CategoryFacts& f = factsOf(category);
    return L(f.titleKey, QLatin1String(f.titleDefault));
}

QString symbol(WidgetCategory category) {
    return QLatin1String(factsOf(category).symbol);
}

QStringList widgetCategoryMembers(WidgetCategory category) {
    QStringList kinds;
    for (const BuiltInWidget& widget : BuiltInWidget::table()) {
        if (widget.category == category) {
            kinds.append(widget.metadata.kind);
        }
    }
    return kinds;
}

WidgetCategory widgetCategoryOf(const QString& kind) {
    const BuiltInWidget* widget = BuiltInWidget::find(kind);
    return widget != nullptr ? widget->category : WidgetCategory::tools;
}

} // namespace tw
