#include "desk/AppUsageLedger.h"

#include "text/L.h"

#include <QCollator>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

constexpr double secondsPerHour = 3600.0;
// Longer ids and names are no window class or application name.
constexpr qsizetype longestText = 512;

QString categoryID(AppCategory category) {
    return QStringLiteral("cat:") + appCategoryWords.of(category);
}

AppUsageSummary summarise(QList<AppUsageRow> rows, int count) {
    AppUsageSummary summary;
    for (const AppUsageRow& row : rows) {
        summary.total += row.seconds;
    }
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::sort(rows.begin(), rows.end(), [&collator](const AppUsageRow& a, const AppUsageRow& b) {
        if (a.seconds != b.seconds) {
            return a.seconds > b.seconds;
        }
        const int byName = collator.compare(a.name, b.name);
        return byName != 0 ? byName < 0 : a.appID < b.appID;
    });
    rows.resize(std::min<qsizetype>(rows.size(), std::max(count, 0)));
    summary.rows = std::move(rows);
    return summary;
}

} // namespace

qint64 AppUsageLedger::hourOf(double seconds) {
    return static_cast<qint64>(std::floor(seconds / secondsPerHour));
}

void AppUsageLedger::add(const AppRef& app, double from, double to) {
    if (!(to > from) || !std::isfinite(from) || !std::isfinite(to)) {
        return;
    }
    m_names.insert(app.id, app.name);
    double t = from;
    while (t < to) {
        const qint64 hour = hourOf(t);
        const double boundary = static_cast<double>(hour + 1) * secondsPerHour;
        const double end = std::min(boundary, to);
        m_buckets[hour][app.id] += end - t;
        t = end;
    }
}

bool AppUsageLedger::hasExpired(double now) const {
    return !m_buckets.empty() && m_buckets.begin()->first <= hourOf(now) - keptHours;
}

void AppUsageLedger::prune(double now) {
    if (!hasExpired(now)) {
        return;
    }
    m_buckets.erase(m_buckets.begin(), m_buckets.upper_bound(hourOf(now) - keptHours));
    QHash<QString, QString> kept;
    for (const auto& [hour, apps] : m_buckets) {
        for (auto app = apps.cbegin(); app != apps.cend(); ++app) {
            if (!kept.contains(app.key())) {
                kept.insert(app.key(), m_names.value(app.key()));
            }
        }
    }
    m_names = std::move(kept);
}

qint64 AppUsageLedger::firstHour(AppUsageRange range, const QDateTime& now) {
    const qint64 hour = hourOf(static_cast<double>(now.toSecsSinceEpoch()));
    switch (range) {
    case AppUsageRange::last24h:
        return hour - 23;
    case AppUsageRange::today:
        return hourOf(
            static_cast<double>(now.date().startOfDay(now.timeZone()).toSecsSinceEpoch()));
    case AppUsageRange::week:
        return hour - 167;
    }
    return hour;
}

QHash<QString, double> AppUsageLedger::sums(const QDateTime& now, AppUsageRange range) const {
    QHash<QString, double> sums;
    for (auto bucket = m_buckets.lower_bound(firstHour(range, now)); bucket != m_buckets.end();
         ++bucket) {
        for (auto app = bucket->second.cbegin(); app != bucket->second.cend(); ++app) {
            sums[app.key()] += app.value();
        }
    }
    return sums;
}

std::map<AppCategory, double> AppUsageLedger::categorySums(const QDateTime& now,
                                                           AppUsageRange range,
                                                           const CategoryOf& categoryOf) const {
    std::map<AppCategory, double> sums;
    const QHash<QString, double> apps = this->sums(now, range);
    for (auto app = apps.cbegin(); app != apps.cend(); ++app) {
        sums[categoryOf(app.key())] += app.value();
    }
    return sums;
}

AppUsageSummary AppUsageLedger::top(int count, const QDateTime& now, AppUsageRange range) const {
    QList<AppUsageRow> rows;
    const QHash<QString, double> apps = sums(now, range);
    for (auto app = apps.cbegin(); app != apps.cend(); ++app) {
        const QString name = m_names.value(app.key());
        rows.append({.appID = app.key(),
                     .name = name.isEmpty() ? app.key() : name,
                     .seconds = app.value()});
    }
    return summarise(std::move(rows), count);
}

AppUsageSummary AppUsageLedger::topCategories(int count, const QDateTime& now, AppUsageRange range,
                                              const CategoryOf& categoryOf) const {
    QList<AppUsageRow> rows;
    for (const auto& [category, seconds] : categorySums(now, range, categoryOf)) {
        rows.append({.appID = categoryID(category),
                     .name = appCategoryTitle(category),
                     .seconds = seconds});
    }
    return summarise(std::move(rows), count);
}

QByteArray AppUsageLedger::toJson() const {
    QJsonObject buckets;
    for (const auto& [hour, apps] : m_buckets) {
        QJsonObject seconds;
        for (auto app = apps.cbegin(); app != apps.cend(); ++app) {
            seconds.insert(app.key(), app.value());
        }
        buckets.insert(QString::number(hour), seconds);
    }
    QJsonObject names;
    for (auto name = m_names.cbegin(); name != m_names.cend(); ++name) {
        names.insert(name.key(), name.value());
    }
    return QJsonDocument(
               QJsonObject{{QStringLiteral("buckets"), buckets}, {QStringLiteral("names"), names}})
        .toJson(QJsonDocument::Compact);
}

std::optional<AppUsageLedger> AppUsageLedger::fromJson(const QByteArray& bytes) {
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isObject()) {
        return std::nullopt;
    }
    const QJsonObject root = document.object();
    AppUsageLedger ledger;
    const QJsonObject buckets = root.value(QLatin1String("buckets")).toObject();
    for (auto bucket = buckets.begin(); bucket != buckets.end(); ++bucket) {
        bool isHour = false;
        const qint64 hour = bucket.key().toLongLong(&isHour);
        if (!isHour) {
            continue;
        }
        const QJsonObject apps = bucket.value().toObject();
        QHash<QString, double> seconds;
        for (auto app = apps.begin(); app != apps.end(); ++app) {
            const double value = app.value().toDouble(-1);
            if (app.key().isEmpty() || app.key().size() > longestText || !(value > 0)) {
                continue;
            }
            seconds.insert(app.key(), std::min(value, secondsPerHour));
        }
        if (!seconds.isEmpty()) {
            ledger.m_buckets.emplace(hour, std::move(seconds));
        }
    }
    const QJsonObject names = root.value(QLatin1String("names")).toObject();
    for (auto name = names.begin(); name != names.end(); ++name) {
        const QString text = name.value().toString().left(longestText);
        if (!text.isEmpty() && name.key().size() <= longestText) {
            ledger.m_names.insert(name.key(), text);
        }
    }
    return ledger;
}

QString appCategoryTitle(AppCategory category) {
    switch (category) {
    case AppCategory::work:
        return L("appusage.cat.work", QStringLiteral("Work"));
    case AppCategory::communication:
        return L("appusage.cat.communication", QStringLiteral("Communication"));
    case AppCategory::web:
        return L("appusage.cat.web", QStringLiteral("Web"));
    case AppCategory::creative:
        return L("appusage.cat.creative", QStringLiteral("Creative"));
    case AppCategory::entertainment:
        return L("appusage.cat.entertainment", QStringLiteral("Entertainment"));
    case AppCategory::other:
        break;
    }
    return L("appusage.cat.other", QStringLiteral("Other"));
}

} // namespace tw
