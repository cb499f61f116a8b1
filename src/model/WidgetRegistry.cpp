#include "model/WidgetRegistry.h"

#include "model/BuiltInWidget.h"
#include "model/CustomWidgetDefinitions.h"
#include "model/WidgetSearch.h"
#include "text/L.h"

#include <QUrl>

namespace tw {

namespace {

constexpr int customMaxInstances = 5;

// The last component of a path as a file manager shows it: trailing slashes don't count.
QString lastPathComponent(const QString& path) {
    qsizetype end = path.size();
    while (end > 1 && path.at(end - 1) == QLatin1Char('/')) {
        --end;
    }
    QString trimmed = path.left(end);
    if (trimmed == QLatin1String("/")) {
        return trimmed;
    }
    return trimmed.mid(trimmed.lastIndexOf(QLatin1Char('/')) + 1);
}

std::optional<QString> nonEmpty(const QString& text) {
    if (text.isEmpty()) {
        return std::nullopt;
    }
    return text;
}

} // namespace

WidgetRegistry::WidgetRegistry(const CustomWidgetDefinitions* custom)
    : m_custom(custom) {}

const QList<WidgetDefinition>& WidgetRegistry::all() {
    static const QList<WidgetDefinition> definitions = [] {
        QList<WidgetDefinition> list;
        for (const BuiltInWidget& widget : BuiltInWidget::table()) {
            list.append(WidgetDefinition{widget.metadata});
        }
        return list;
    }();
    return definitions;
}

std::optional<WidgetDefinition> WidgetRegistry::definition(const QString& kind) const {
    if (isCustomKind(kind)) {
        return m_custom != nullptr ? m_custom->widgetDefinition(kind) : std::nullopt;
    }
    return builtInDefinition(kind);
}

std::optional<WidgetDefinition> WidgetRegistry::builtInDefinition(const QString& kind) {
    // A retired kind: its instances keep their stored kind and draw as a clock.
    const QString lookup = kind == QLatin1String("analogclock") ? QStringLiteral("clock") : kind;
    if (const BuiltInWidget* widget = BuiltInWidget::find(lookup)) {
        return WidgetDefinition{widget->metadata};
    }
    return std::nullopt;
}

QString WidgetRegistry::summary(const QString& kind) {
    const BuiltInWidget* widget = BuiltInWidget::find(kind);
    return widget != nullptr ? widget->summary : QString();
}

int WidgetRegistry::maxInstances(const QString& kind) {
    if (isCustomKind(kind)) {
        return customMaxInstances;
    }
    const BuiltInWidget* widget = BuiltInWidget::find(kind);
    return widget != nullptr ? widget->maxInstances : 1;
}

QSet<QString> WidgetRegistry::contentKeys(const QString& kind) {
    static const QHash<QString, QSet<QString>> keys{
        {QStringLiteral("stickynote"),
         {QStringLiteral("text"), QStringLiteral("noteCount"), QStringLiteral("activeNote"),
          QStringLiteral("note0"), QStringLiteral("note1"), QStringLiteral("note2"),
          QStringLiteral("note3"), QStringLiteral("note4"), QStringLiteral("note5")}},
        {QStringLiteral("dropzone"), {QStringLiteral("items")}},
        {QStringLiteral("photos"), {QStringLiteral("folder"), QStringLiteral("caption")}},
        {QStringLiteral("countdown"),
         {QStringLiteral("title"), QStringLiteral("target"), QStringLiteral("created")}},
        {QStringLiteral("apps"), {QStringLiteral("apps")}},
        {QStringLiteral("quote"), {QStringLiteral("own")}},
        {QStringLiteral("web"), {QStringLiteral("url")}},
        {QStringLiteral("folder"), {QStringLiteral("path")}},
        {QStringLiteral("timer"), {QStringLiteral("endsAt"), QStringLiteral("paused")}},
        {QStringLiteral("pomodoro"),
         {QStringLiteral("pomoPhase"), QStringLiteral("pomoDone"), QStringLiteral("pomoEnds"),
          QStringLiteral("pomoLeft")}},
        {QStringLiteral("stopwatch"),
         {QStringLiteral("swAnchor"), QStringLiteral("swAcc"), QStringLiteral("swLaps"),
          QStringLiteral("swDropped")}},
    };
    return keys.value(kind);
}

std::optional<QString> WidgetRegistry::copyLabel(const WidgetInstance& instance) {
    const QString& kind = instance.kind;
    const auto value = [&instance](const char* key) {
        return instance.setting(QLatin1String(key)).value_or(QString());
    };
    if (kind == QLatin1String("folder")) {
        const QString path = value("path");
        if (path.isEmpty()) {
            return L("folder.defaultCopy", QStringLiteral("Desktop"));
        }
        return nonEmpty(lastPathComponent(path));
    }
    if (kind == QLatin1String("photos")) {
        return nonEmpty(lastPathComponent(value("folder")));
    }
    if (kind == QLatin1String("web")) {
        return nonEmpty(QUrl(value("url"), QUrl::StrictMode).host());
    }
    if (kind == QLatin1String("clock") || kind == QLatin1String("worldclock")) {
        // A time-zone identifier such as "Europe/Paris" names its city last.
        return nonEmpty(lastPathComponent(value("zone")));
    }
    static const QHash<QString, const char*> plainKeys{
        {QStringLiteral("shortcut"), "name"}, {QStringLiteral("countdown"), "title"},
        {QStringLiteral("stocks"), "symbol"}, {QStringLiteral("crypto"), "coin"},
        {QStringLiteral("currency"), "to"},
    };
    if (const auto it = plainKeys.constFind(kind); it != plainKeys.cend()) {
        return nonEmpty(value(*it));
    }
    return std::nullopt;
}

QList<WidgetDefinition> WidgetRegistry::search(const QString& query) {
    const QStringList wanted = WidgetSearch::words(query);
    if (wanted.isEmpty()) {
        return all();
    }
    QList<WidgetDefinition> found;
    for (const BuiltInWidget& widget : BuiltInWidget::table()) {
        if (WidgetSearch::matches(wanted, widget.searchWords)) {
            found.append(WidgetDefinition{widget.metadata});
        }
    }
    return found;
}

QList<WidgetRegistry::CategoryGroup> WidgetRegistry::grouped() {
    QList<CategoryGroup> groups;
    for (const WidgetCategory category : allWidgetCategories) {
        CategoryGroup group{category, {}};
        for (const WidgetDefinition& definition : all()) {
            if (widgetCategoryOf(definition.metadata.kind) == category) {
                group.widgets.append(definition);
            }
        }
        if (!group.widgets.isEmpty()) {
            groups.append(group);
        }
    }
    return groups;
}

QList<WidgetRegistry::CategoryGroup> WidgetRegistry::groupedWithCustom() const {
    QList<CategoryGroup> groups = grouped();
    const QList<WidgetDefinition> custom =
        m_custom != nullptr ? m_custom->widgetDefinitions() : QList<WidgetDefinition>();
    if (custom.isEmpty()) {
        return groups;
    }
    const auto tools = std::find_if(groups.begin(), groups.end(), [](const CategoryGroup& group) {
        return group.category == WidgetCategory::tools;
    });
    if (tools == groups.end()) {
        groups.append(CategoryGroup{WidgetCategory::tools, custom});
    } else {
        tools->widgets.append(custom);
    }
    return groups;
}

QList<WidgetDefinition> WidgetRegistry::searchWithCustom(const QString& query) const {
    QList<WidgetDefinition> found = search(query);
    if (m_custom == nullptr) {
        return found;
    }
    const QStringList wanted = WidgetSearch::words(query);
    for (const WidgetDefinition& definition : m_custom->widgetDefinitions()) {
        if (WidgetSearch::matches(wanted, WidgetSearch::words(definition.metadata.displayName))) {
            found.append(definition);
        }
    }
    return found;
}

} // namespace tw
