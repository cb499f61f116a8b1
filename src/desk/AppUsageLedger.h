// Seconds each application was in front, in hour buckets, and the summaries the app time tile
// shows. A plain value: it reads no clock and no system, so any day can be replayed.
#pragma once

#include "platform/AppCategory.h"
#include "platform/RawValues.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>

#include <functional>
#include <map>
#include <optional>

namespace tw {

struct AppRef {
    QString id;
    QString name;

    bool operator==(const AppRef&) const = default;
};

enum class AppUsageRange { last24h, today, week };

inline constexpr RawValues<AppUsageRange, 3> appUsageRangeWords({"24h", "today", "7d"});

struct AppUsageRow {
    // "cat:<word>" in a summary by category.
    QString appID;
    QString name;
    double seconds = 0;

    bool operator==(const AppUsageRow&) const = default;
};

struct AppUsageSummary {
    QList<AppUsageRow> rows;
    // Over every app, also those cut off.
    double total = 0;

    bool operator==(const AppUsageSummary&) const = default;
};

class AppUsageLedger {
public:
    using CategoryOf = std::function<AppCategory(const QString& appID)>;

    // Seconds since 1970 / 3600, rounded down: UTC hours, whatever the time zone.
    static qint64 hourOf(double seconds);
    // 192 full hours and the running one: seven days stay whole, with a day to spare.
    static constexpr qint64 keptHours = 193;

    // Adds the stretch to the hours it covers; an empty or backward stretch changes nothing.
    void add(const AppRef& app, double from, double to);
    // Forgets the hours beyond what is kept, and the names of apps left in none.
    void prune(double now);
    bool hasExpired(double now) const;

    // The first hour a range counts; "today" starts at midnight in `now`'s time zone.
    static qint64 firstHour(AppUsageRange range, const QDateTime& now);
    QHash<QString, double> sums(const QDateTime& now, AppUsageRange range) const;
    std::map<AppCategory, double> categorySums(const QDateTime& now, AppUsageRange range,
                                               const CategoryOf& categoryOf) const;
    // The `count` apps used longest, ties by name regardless of case.
    AppUsageSummary top(int count, const QDateTime& now, AppUsageRange range) const;
    AppUsageSummary topCategories(int count, const QDateTime& now, AppUsageRange range,
                                  const CategoryOf& categoryOf) const;

    bool isEmpty() const { return m_buckets.empty(); }
    const std::map<qint64, QHash<QString, double>>& buckets() const { return m_buckets; }
    const QHash<QString, QString>& names() const { return m_names; }

    // {"buckets": {"<hour>": {"<id>": seconds}}, "names": {"<id>": name}}.
    QByteArray toJson() const;
    // Keeps what makes sense of any JSON object: numbers for hours, finite seconds within an
    // hour, texts of sane length; nullopt for anything but an object.
    static std::optional<AppUsageLedger> fromJson(const QByteArray& bytes);

    bool operator==(const AppUsageLedger&) const = default;

private:
    std::map<qint64, QHash<QString, double>> m_buckets;
    QHash<QString, QString> m_names;
};

// "Work", "Communication", … in the person's language.
QString appCategoryTitle(AppCategory category);

} // namespace tw
