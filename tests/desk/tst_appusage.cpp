// The app time ledger and its tracker as plain values: what a stretch in front adds, where idle
// time and gaps cut it off, how the summaries sort and what the file keeps.
#include "LedgerTotals.h"
#include "TestRows.h"
#include "desk/AppUsageTracker.h"
#include "desk/AppUsageView.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QTimeZone>

using namespace tw;
using namespace tw::test;

namespace {

// 2026-03-14 09:00:00 UTC, on an hour.
constexpr double hour0 = 1773478800.0;

// "<id>[:<name>]@<seconds>[/<idle>]" or "-@<seconds>" for nothing in front; blanks between steps.
AppUsageTracker play(const QString& steps) {
    AppUsageTracker tracker;
    for (const QString& step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString who = step.section(QLatin1Char('@'), 0, 0);
        const QString when = step.section(QLatin1Char('@'), 1);
        std::optional<AppRef> app;
        if (who != QLatin1String("-")) {
            const QString id = who.section(QLatin1Char(':'), 0, 0);
            const QString name =
                who.contains(QLatin1Char(':')) ? who.section(QLatin1Char(':'), 1) : id.toUpper();
            app = AppRef{.id = id, .name = name};
        }
        tracker.tick(app, hour0 + when.section(QLatin1Char('/'), 0, 0).toDouble(),
                     when.section(QLatin1Char('/'), 1).toDouble());
    }
    return tracker;
}

QString rowsOf(const AppUsageSummary& summary) {
    QStringList parts;
    for (const AppUsageRow& row : summary.rows) {
        parts.append(row.appID + QLatin1Char('=') + QString::number(row.seconds));
    }
    return parts.join(QLatin1Char(' '));
}

} // namespace

class TestAppUsage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void tracker_data() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QString>("current");
        row("a switch books the first app to the moment", "a@0 b@20 b@40", "a=20 b=20", "b");
        row("299 s idle still counts up to now", "a@0 a@100/299", "a=100", "a");
        row("301 s idle counts to the last input and 300 s, then stops", "a@0 a@100/301", "a=99",
            "");
        row("after stopping for idle nothing counts until input", "a@0 a@100/301 a@120/321", "a=99",
            "");
        row("input again starts the clock", "a@0 a@100/301 a@120/2 a@140", "a=119", "a");
        row("the first tick after a long stall adds at most 150 s", "a@0 a@3600", "a=150", "a");
        row("a negative idle counts as none", "a@0 a@20/-40", "a=20", "a");
        row("nothing in front stops the clock", "a@0 -@20 -@40 a@60 a@80", "a=40", "a");
        row("idle from the start begins nothing", "a@0/400 a@20/420", "", "");
        row("a new name of the same id starts anew", "a:Old@0 a:New@20 a:New@40", "a=40", "a");
    }
    void tracker() {
        QFETCH(QString, steps);
        QFETCH(QString, expected);
        QFETCH(QString, current);
        const AppUsageTracker tracker = play(steps);
        QCOMPARE(totals(tracker.ledger), expected);
        QCOMPARE(tracker.current ? tracker.current->app.id : QString(), current);
    }

    void nameChangeUpdatesTheNames() {
        const AppUsageTracker tracker = play(QStringLiteral("a:Old@0 a:New@20 a:New@40"));
        QCOMPARE(tracker.ledger.names().value(QStringLiteral("a")), QStringLiteral("New"));
        QCOMPARE(tracker.current->app.name, QStringLiteral("New"));
    }

    void add_data() {
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("to");
        QTest::addColumn<QString>("buckets");
        row("an empty stretch adds nothing, not even a name", 30.0, 30.0, "");
        row("a backward stretch adds nothing", 30.0, 10.0, "");
        row("inside one hour", 60.0, 90.0, "0:30");
        row("10:59:30 to 11:00:45 splits at the boundary", -30.0, 45.0, "-1:30 0:45");
        row("across two boundaries", -10.0, 3610.0, "-1:10 0:3600 1:10");
    }
    void add() {
        QFETCH(double, from);
        QFETCH(double, to);
        QFETCH(QString, buckets);
        AppUsageLedger ledger;
        ledger.add({.id = QStringLiteral("a"), .name = QStringLiteral("A")}, hour0 + from,
                   hour0 + to);
        QStringList parts;
        for (const auto& [hour, apps] : ledger.buckets()) {
            parts.append(QStringLiteral("%1:%2")
                             .arg(hour - AppUsageLedger::hourOf(hour0))
                             .arg(apps.value(QStringLiteral("a"))));
        }
        QCOMPARE(parts.join(QLatin1Char(' ')), buckets);
        QCOMPARE(ledger.names().isEmpty(), buckets.isEmpty());
    }

    void prune() {
        AppUsageLedger ledger;
        const double hour = 3600;
        ledger.add({.id = QStringLiteral("old"), .name = QStringLiteral("Old")}, hour0 - 193 * hour,
                   hour0 - 193 * hour + 60);
        ledger.add({.id = QStringLiteral("kept"), .name = QStringLiteral("Kept")},
                   hour0 - 192 * hour, hour0 - 192 * hour + 60);
        QVERIFY(ledger.hasExpired(hour0));
        ledger.prune(hour0 + 10);
        QCOMPARE(totals(ledger), QStringLiteral("kept=60"));
        QCOMPARE(ledger.names().keys(), QStringList{QStringLiteral("kept")});
        QVERIFY(!ledger.hasExpired(hour0));
    }

    void summaries_data() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("byCategory");
        QTest::addColumn<QString>("rows");
        QTest::addColumn<double>("total");
        row("longest first", "a@0 b@10 b@40", 6, false, "b=30 a=10", 40.0);
        row("equal seconds by name, regardless of case", "zed:zed@0 b:Bee@10 a:apple@20 a:apple@30",
            6, false, "a=10 b=10 zed=10", 30.0);
        row("the total counts rows cut off", "a@0 b@30 c@50 c@60", 1, false, "a=30", 60.0);
        row("by category", "code@0 web@30 doc@50 doc@60", 6, true, "cat:work=40 cat:web=20", 60.0);
    }
    void summaries() {
        QFETCH(QString, steps);
        QFETCH(int, count);
        QFETCH(bool, byCategory);
        QFETCH(QString, rows);
        QFETCH(double, total);
        const AppUsageLedger ledger = play(steps).ledger;
        const QDateTime now = QDateTime::fromSecsSinceEpoch(qint64(hour0) + 60, QTimeZone::utc());
        const auto categoryOf = [](const QString& id) {
            return id == QLatin1String("web") ? AppCategory::web : AppCategory::work;
        };
        const AppUsageSummary summary =
            byCategory ? ledger.topCategories(count, now, AppUsageRange::last24h, categoryOf)
                       : ledger.top(count, now, AppUsageRange::last24h);
        QCOMPARE(rowsOf(summary), rows);
        QCOMPARE(summary.total, total);
    }

    void ranges_data() {
        QTest::addColumn<QString>("zone");
        QTest::addColumn<int>("range");
        QTest::addColumn<double>("seconds");
        // Now is 09:30 UTC; an hour of use starts 24, 21, 12, 9 and 3 hours before 09:00 and
        // one 8 days before, which no range counts. Midnight is 00:00 UTC (hour -9), 04:00 UTC in
        // New York (daylight time) and 15:00 UTC the day before in Tokyo.
        using R = AppUsageRange;
        row("24 h takes the last 24 hour buckets", "UTC", int(R::last24h), 14400.0);
        row("7 days takes 168", "UTC", int(R::week), 18000.0);
        row("today from midnight in UTC", "UTC", int(R::today), 7200.0);
        row("today from midnight in New York", "America/New_York", int(R::today), 3600.0);
        row("today from midnight in Tokyo", "Asia/Tokyo", int(R::today), 10800.0);
    }
    void ranges() {
        QFETCH(QString, zone);
        QFETCH(int, range);
        QFETCH(double, seconds);
        AppUsageLedger ledger;
        const AppRef app{.id = QStringLiteral("a"), .name = QStringLiteral("A")};
        for (const int hoursBefore : {24, 21, 12, 9, 3, 8 * 24}) {
            ledger.add(app, hour0 - hoursBefore * 3600.0, hour0 - hoursBefore * 3600.0 + 3600);
        }
        const QByteArray stored = ledger.toJson();
        const QDateTime now =
            QDateTime::fromSecsSinceEpoch(qint64(hour0) + 1800, QTimeZone(zone.toUtf8()));
        QCOMPARE(ledger.top(6, now, AppUsageRange(range)).total, seconds);
        QCOMPARE(ledger.toJson(), stored);
    }

    void json_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("kept");
        row("not JSON", QByteArray("{\"buckets\": {"), false, "");
        row("an array", QByteArray("[1,2]"), false, "");
        row("an empty object is an empty ledger", QByteArray("{}"), true, "");
        row("hours that are no numbers and seconds of the wrong type are dropped",
            QByteArray(R"({"buckets":{"x":{"a":5},"10":{"a":"5","b":7,"c":null}},"names":[]})"),
            true, "b=7");
        row("negative, zero and over an hour",
            QByteArray(R"({"buckets":{"10":{"a":-5,"b":0,"c":1e300}}})"), true, "c=3600");
        row("a bucket that is no object", QByteArray(R"({"buckets":{"10":3,"11":{"a":2}}})"), true,
            "a=2");
    }
    void json() {
        QFETCH(QByteArray, json);
        QFETCH(bool, accepted);
        QFETCH(QString, kept);
        const std::optional<AppUsageLedger> ledger = AppUsageLedger::fromJson(json);
        QCOMPARE(ledger.has_value(), accepted);
        if (ledger) {
            QCOMPARE(totals(*ledger), kept);
        }
    }

    void jsonRoundTrip() {
        const AppUsageLedger ledger = play(QStringLiteral("a:Äpfel@-40 b@10 b@100")).ledger;
        const QJsonObject root = QJsonDocument::fromJson(ledger.toJson()).object();
        QCOMPARE(root.keys(), (QStringList{QStringLiteral("buckets"), QStringLiteral("names")}));
        QCOMPARE(AppUsageLedger::fromJson(ledger.toJson()), ledger);
    }

    void goal() {
        AppUsageSettings settings =
            AppUsageSettings::read({{QStringLiteral("goal"), QStringLiteral("limit")},
                                    {QStringLiteral("goalHours"), QStringLiteral("3")},
                                    {QStringLiteral("range"), QStringLiteral("7d")},
                                    {QStringLiteral("every"), QStringLiteral("45")}});
        QCOMPARE(settings.goalSeconds(), 3 * 3600.0);
        QCOMPARE(settings.everyMinutes, 10);
        const AppUsageLedger ledger = play(QStringLiteral("game@0 code@60 code@200")).ledger;
        const QDateTime now = QDateTime::fromSecsSinceEpoch(qint64(hour0) + 300, QTimeZone::utc());
        const auto categoryOf = [](const QString& id) {
            return id == QLatin1String("game") ? AppCategory::entertainment : AppCategory::work;
        };
        const auto noIcon = [](const QString&) { return QString(); };
        QCOMPARE(makeAppUsageView(ledger, settings, now, categoryOf, noIcon).goalDone, 60.0);
        settings.goal = AppUsageGoal::focus;
        QCOMPARE(makeAppUsageView(ledger, settings, now, categoryOf, noIcon).goalDone, 140.0);
    }
};

QTEST_GUILESS_MAIN(TestAppUsage)
#include "tst_appusage.moc"
