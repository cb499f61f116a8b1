// What one app time tile shows: its settings read leniently, and the summary and goal they ask
// of the ledger, as the faces draw them.
#pragma once

#include "desk/AppUsageLedger.h"
#include "model/WidgetInstance.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QUuid>

#include <optional>

namespace tw {

enum class AppUsageGoal { off, focus, limit };

inline constexpr RawValues<AppUsageGoal, 3> appUsageGoalWords({"off", "focus", "limit"});

struct AppUsageSettings {
    AppUsageRange range = AppUsageRange::last24h;
    bool byCategory = false;
    AppUsageGoal goal = AppUsageGoal::off;
    // 1…12 hours.
    int goalHours = 2;
    // Minutes between two looks at the ledger: 10, 30 or 60.
    int everyMinutes = 10;

    // Unknown words and numbers fall back to the defaults.
    static AppUsageSettings read(const WidgetSettings& settings);
    double goalSeconds() const { return goalHours * 3600.0; }
    // Focus counts Work, a limit Entertainment; always today.
    std::optional<AppCategory> goalCategory() const;

    bool operator==(const AppUsageSettings&) const = default;
};

struct AppUsageView {
    AppUsageSettings settings;
    AppUsageSummary summary;
    // Icons of the apps in the summary, by id.
    QHash<QString, QString> icons;
    // Seconds today in the goal's category; 0 with the goal off.
    double goalDone = 0;
    QDateTime at;

    bool operator==(const AppUsageView&) const = default;
};

// The rows a tile shows.
inline constexpr int appUsageTopCount = 6;

// The tile's view of `ledger` at `now`.
AppUsageView makeAppUsageView(const AppUsageLedger& ledger, const AppUsageSettings& settings,
                              const QDateTime& now, const AppUsageLedger::CategoryOf& categoryOf,
                              const std::function<QString(const QString&)>& iconOf);

// A made-up morning of work for previews and pictures.
AppUsageView sampleAppUsageView(const AppUsageSettings& settings, const QDateTime& now);

struct AppUsageBoard {
    QHash<QUuid, AppUsageView> views;

    const AppUsageView* viewFor(const QUuid& instance) const {
        const auto found = views.constFind(instance);
        return found == views.cend() ? nullptr : &*found;
    }

    bool operator==(const AppUsageBoard&) const = default;
};

} // namespace tw
