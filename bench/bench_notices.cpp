// The notices: decoding a feed of 500 notices, and the selection for one placement over it, with
// the memory of a long-running installation (every notice shown, a third dismissed).
#include "notices/NoticeEngine.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

#include <benchmark/benchmark.h>

using namespace tw;

namespace {

const QDateTime kNow(QDate(2026, 5, 10), QTime(12, 0), QTimeZone::utc());

// Notices with every kind of rule: dates, audiences, frequencies, texts in two languages.
QByteArray feedOf(int count) {
    QJsonArray notices;
    for (int i = 0; i < count; ++i) {
        const QString n = QString::number(i);
        notices.append(QJsonObject{
            {QStringLiteral("id"), QStringLiteral("notice-") + n},
            {QStringLiteral("priority"), i % 7},
            {QStringLiteral("startsAt"), kNow.addDays(-(i % 30)).toString(Qt::ISODate)},
            {QStringLiteral("endsAt"), kNow.addDays(i % 20 + 1).toString(Qt::ISODateWithMs)},
            {QStringLiteral("placements"),
             QJsonArray{QStringLiteral("banner"), QStringLiteral("menu")}},
            {QStringLiteral("audience"),
             QJsonObject{{QStringLiteral("minVersion"), QStringLiteral("0.") + n},
                         {QStringLiteral("languages"), QJsonArray{QStringLiteral("de")}},
                         {QStringLiteral("lacksWidgets"), QJsonArray{QStringLiteral("stocks")}}}},
            {QStringLiteral("frequency"),
             QJsonObject{{QStringLiteral("mode"),
                          i % 2 ? QStringLiteral("everyDays") : QStringLiteral("always")},
                         {QStringLiteral("days"), 3}}},
            {QStringLiteral("title"),
             QJsonObject{{QStringLiteral("en"), QStringLiteral("Tip ") + n},
                         {QStringLiteral("de"), QStringLiteral("Tipp ") + n}}},
            {QStringLiteral("body"),
             QJsonObject{{QStringLiteral("en"), QStringLiteral("Something worth knowing, ") + n}}},
            {QStringLiteral("actions"),
             QJsonArray{QJsonObject{{QStringLiteral("kind"), QStringLiteral("pane")},
                                    {QStringLiteral("value"), QStringLiteral("layouts")}}}},
        });
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("notices"), notices}}).toJson();
}

void decode500(benchmark::State& state) {
    const QByteArray feed = feedOf(500);
    for (auto _ : state) {
        benchmark::DoNotOptimize(NoticeEngine::decode(feed));
    }
    state.SetBytesProcessed(state.iterations() * feed.size());
}
BENCHMARK(decode500)->Unit(benchmark::kMicrosecond);

void select500(benchmark::State& state) {
    const QList<Notice> feed = *NoticeEngine::decode(feedOf(500));
    NoticeState memory;
    for (int i = 0; i < feed.size(); ++i) {
        memory.noteShown(feed[i].id, kNow.addDays(-(i % 9)));
        if (i % 3 == 0) {
            memory.noteDismissed(feed[i].id);
        }
    }
    const NoticeContext context{.channel = QStringLiteral("direct"),
                                .version = QStringLiteral("0.250"),
                                .language = QStringLiteral("de-AT"),
                                .daysInstalled = 40,
                                .widgetKinds = {QStringLiteral("clock"), QStringLiteral("weather")},
                                .widgetCount = 3,
                                .now = kNow,
                                .userAllows = true,
                                .testing = false};
    qsizetype chosen = 0;
    for (auto _ : state) {
        const QList<Notice> list =
            NoticeEngine::notices(feed, Notice::Placement::banner, context, memory, {});
        chosen = list.size();
        benchmark::DoNotOptimize(list);
    }
    state.counters["chosen"] = static_cast<double>(chosen);
}
BENCHMARK(select500)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
