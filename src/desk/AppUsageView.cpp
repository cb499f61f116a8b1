#include "desk/AppUsageView.h"

#include <array>

namespace tw {

AppUsageSettings AppUsageSettings::read(const WidgetSettings& settings) {
    AppUsageSettings read;
    read.range =
        appUsageRangeWords.parse(settings.value(QStringLiteral("range"))).value_or(read.range);
    read.byCategory = settings.value(QStringLiteral("group")) == QLatin1String("categories");
    read.goal = appUsageGoalWords.parse(settings.value(QStringLiteral("goal"))).value_or(read.goal);
    bool ok = false;
    const double hours = settings.value(QStringLiteral("goalHours")).toDouble(&ok);
    if (ok && hours >= 1 && hours <= 12) {
        read.goalHours = static_cast<int>(hours);
    }
    const int every = settings.value(QStringLiteral("every")).toInt(&ok);
    if (ok && (every == 10 || every == 30 || every == 60)) {
        read.everyMinutes = every;
    }
    return read;
}

std::optional<AppCategory> AppUsageSettings::goalCategory() const {
    switch (goal) {
    case AppUsageGoal::focus:
        return AppCategory::work;
    case AppUsageGoal::limit:
        return AppCategory::entertainment;
    case AppUsageGoal::off:
        break;
    }
    return std::nullopt;
}

AppUsageView makeAppUsageView(const AppUsageLedger& ledger, const AppUsageSettings& settings,
                              const QDateTime& now, const AppUsageLedger::CategoryOf& categoryOf,
                              const std::function<QString(const QString&)>& iconOf) {
    AppUsageView view;
    view.settings = settings;
    view.at = now;
    view.summary = settings.byCategory
                       ? ledger.topCategories(appUsageTopCount, now, settings.range, categoryOf)
                       : ledger.top(appUsageTopCount, now, settings.range);
    if (!settings.byCategory) {
        for (const AppUsageRow& row : view.summary.rows) {
            view.icons.insert(row.appID, iconOf(row.appID));
        }
    }
    if (const std::optional<AppCategory> category = settings.goalCategory()) {
        const std::map<AppCategory, double> today =
            ledger.categorySums(now, AppUsageRange::today, categoryOf);
        const auto found = today.find(*category);
        view.goalDone = found == today.end() ? 0 : found->second;
    }
    return view;
}

AppUsageView sampleAppUsageView(const AppUsageSettings& settings, const QDateTime& now) {
    struct Sample {
        const char* id;
        const char* name;
        const char* icon;
        AppCategory category;
        double minutes;
    };
    static constexpr std::array samples{
        Sample{"code", "Code", "accessories-text-editor", AppCategory::work, 96},
        Sample{"firefox", "Firefox", "web-browser", AppCategory::web, 71},
        Sample{"thunderbird", "Thunderbird", "mail-send-receive", AppCategory::communication, 38},
        Sample{"gnome-terminal-server", "Terminal", "utilities-terminal", AppCategory::work, 27},
        Sample{"inkscape", "Inkscape", "applications-graphics", AppCategory::creative, 16},
        Sample{"rhythmbox", "Rhythmbox", "multimedia-player", AppCategory::entertainment, 9},
        Sample{"org.gnome.Nautilus", "Files", "system-file-manager", AppCategory::other, 4},
    };
    AppUsageLedger ledger;
    QHash<QString, AppCategory> categories;
    QHash<QString, QString> icons;
    const double end = static_cast<double>(now.toSecsSinceEpoch());
    for (const Sample& sample : samples) {
        const QString id = QLatin1String(sample.id);
        categories.insert(id, sample.category);
        icons.insert(id, QLatin1String(sample.icon));
        ledger.add({.id = id, .name = QString::fromUtf8(sample.name)}, end - sample.minutes * 60,
                   end);
    }
    return makeAppUsageView(
        ledger, settings, now,
        [&categories](const QString& id) { return categories.value(id, AppCategory::other); },
        [&icons](const QString& id) { return icons.value(id); });
}

} // namespace tw
