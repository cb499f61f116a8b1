// The catalogue of widget kinds: look-up, limits, content keys, labels, search and groups.
#pragma once

#include "model/WidgetCategory.h"
#include "model/WidgetDefinition.h"
#include "model/WidgetInstance.h"

#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace tw {

class CustomWidgetDefinitions;

class WidgetRegistry {
public:
    struct CategoryGroup {
        WidgetCategory category = WidgetCategory::tools;
        QList<WidgetDefinition> widgets;

        bool operator==(const CategoryGroup&) const = default;
    };

    // Kinds that begin with customKindPrefix() are asked of `custom`; without it they are unknown.
    explicit WidgetRegistry(const CustomWidgetDefinitions* custom = nullptr);

    static QString customKindPrefix() { return QStringLiteral("custom."); }
    static bool isCustomKind(const QString& kind) { return kind.startsWith(customKindPrefix()); }

    // The built-in definitions in catalogue order; custom kinds are never part of it.
    static const QList<WidgetDefinition>& all();

    // Custom kinds go to the custom definitions, "analogclock" reads as "clock", anything else
    // must match a built-in kind exactly.
    std::optional<WidgetDefinition> definition(const QString& kind) const;
    // definition() without the custom hand-off.
    static std::optional<WidgetDefinition> builtInDefinition(const QString& kind);

    // What a built-in kind shows, in a few words; empty for any other kind.
    static QString summary(const QString& kind);
    // 5 for a custom kind, the table's limit for a built-in one, 1 for anything else.
    static int maxInstances(const QString& kind);
    // The settings keys that hold content rather than look; a copy of a widget drops them.
    static QSet<QString> contentKeys(const QString& kind);
    // A short text telling two instances of one kind apart; nullopt when there is none.
    static std::optional<QString> copyLabel(const WidgetInstance& instance);
    // The kinds whose kind, name, category or keywords (in the app's language or English) have a
    // word beginning with each word of the query, case and accents ignored, in catalogue order; a
    // blank query gives all().
    static QList<WidgetDefinition> search(const QString& query);
    // One group per category in case order, empty categories left out.
    static QList<CategoryGroup> grouped();
    // grouped() and search() with the custom kinds too, at the end of `tools`, where every
    // custom kind belongs; a custom kind is found by the words of its name.
    QList<CategoryGroup> groupedWithCustom() const;
    QList<WidgetDefinition> searchWithCustom(const QString& query) const;

private:
    const CustomWidgetDefinitions* m_custom;
};

} // namespace tw
