#include "model/WidgetCategory.h"

#include "model/BuiltInWidget.h"
#include "settings/L.h"

namespace tw {

namespace {

struct CategoryFacts {
    const char* id;
    const char* titleKey;
    const char* titleDefault;
    const char* symbol;
};

// Indexed by the enumeration's value.
constexpr std::array<CategoryFacts, 6> facts{{
    {"essentials", "cat.essentials", "Essentials", "star"},
    {"system", "cat.system", "System", "cpu"},
    {"workspace", "cat.workspace", "Workspace", "tray.full"},
    {"time", "cat.time", "Time", "clock"},
    {"tools", "cat.tools", "Tools", "wrench.and.screwdriver"},
    {"ambient", "cat.ambient", "Ambient", "sparkles"},
}};

const CategoryFacts& factsOf(WidgetCategory category) {
    return facts.at(static_cast<std::size_t>(category));
}

} // namespace

QString rawValue(WidgetCategory category) {
    return QLatin1String(factsOf(category).id);
}

std::optional<WidgetCategory> widgetCategoryFromRawValue(QStringView raw) {
    for (const WidgetCategory category : allWidgetCategories) {
        if (raw == QLatin1String(factsOf(category).id)) {
            return category;
        }
    }
    return std::nullopt;
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
