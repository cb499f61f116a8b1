// Whatever "app-usage.json" holds: a ledger read from it keeps every hour's seconds within the
// hour, writes back to the same ledger, and sums, sorts, prunes and counts on without breaking.
#include "Require.h"
#include "desk/AppUsageTracker.h"
#include "desk/AppUsageView.h"

#include <QTimeZone>

#include <cmath>
#include <cstdint>

using tw::fuzz::require;

namespace {

const QDateTime now(QDate(2026, 3, 9), QTime(9, 41), QTimeZone("Europe/Berlin"));

void checkSummary(const tw::AppUsageSummary& summary) {
    require(summary.rows.size() <= tw::appUsageTopCount, "more rows than asked for");
    require(std::isfinite(summary.total) && summary.total >= 0, "a total out of range");
    double sum = 0;
    for (qsizetype i = 0; i < summary.rows.size(); ++i) {
        sum += summary.rows.at(i).seconds;
        require(i == 0 || summary.rows.at(i - 1).seconds >= summary.rows.at(i).seconds,
                "rows out of order");
    }
    require(sum <= summary.total * (1 + 1e-9) + 1e-6, "rows longer than the total");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const std::optional<tw::AppUsageLedger> ledger = tw::AppUsageLedger::fromJson(bytes);
    if (!ledger) {
        return 0;
    }
    for (const auto& [hour, apps] : ledger->buckets()) {
        for (auto app = apps.cbegin(); app != apps.cend(); ++app) {
            require(app.value() > 0 && app.value() <= 3600, "seconds outside an hour");
        }
    }
    require(tw::AppUsageLedger::fromJson(ledger->toJson()) == ledger, "no round trip");

    const auto categoryOf = [](const QString& id) {
        return static_cast<tw::AppCategory>(qHash(id) % 6);
    };
    for (const tw::AppUsageRange range :
         {tw::AppUsageRange::last24h, tw::AppUsageRange::today, tw::AppUsageRange::week}) {
        checkSummary(ledger->top(tw::appUsageTopCount, now, range));
        checkSummary(ledger->topCategories(tw::appUsageTopCount, now, range, categoryOf));
    }

    tw::AppUsageTracker tracker;
    tracker.ledger = *ledger;
    const double t = static_cast<double>(now.toSecsSinceEpoch());
    tracker.tick(tw::AppRef{.id = QStringLiteral("a"), .name = QStringLiteral("A")}, t, 0);
    tracker.tick(std::nullopt, t + 20, 0);
    require(!tracker.ledger.hasExpired(t + 20), "old hours kept past a tick");
    return 0;
}
