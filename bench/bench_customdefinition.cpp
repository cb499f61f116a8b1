// A custom widget at the format's caps: 64 rows of 8 elements with tokens, paths and rules, and
// three named sources. Decoding, clean-up, validation and writing all run whenever the store
// loads, the editor types or a file is imported, so each must stay far below a frame.
#include "custom/CustomWidgetDefinition.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <benchmark/benchmark.h>

using namespace tw;

namespace {

QByteArray largeDefinition() {
    QJsonArray rows;
    for (int r = 0; r < 64; ++r) {
        QJsonArray elements;
        for (int e = 0; e < 8; ++e) {
            elements.append(QJsonObject{
                {QStringLiteral("type"),
                 e % 2 == 0 ? QStringLiteral("value") : QStringLiteral("text")},
                {QStringLiteral("path"), QStringLiteral("tokyo:hourly.temperature_2m.%1").arg(e)},
                {QStringLiteral("text"),
                 QStringLiteral("{data:a.b} {data.oslo:c.%1} {cpu} {time:HH:mm} {nope}").arg(r)},
                {QStringLiteral("decimals"), 9},
                {QStringLiteral("rules"),
                 QJsonArray{QJsonObject{{QStringLiteral("when"), QStringLiteral("above")},
                                        {QStringLiteral("value"), 10},
                                        {QStringLiteral("color"), QStringLiteral("negative")}}}}});
        }
        rows.append(QJsonObject{{QStringLiteral("elements"), elements}});
    }
    QJsonArray sources;
    for (const char* name : {"tokyo", "oslo", "lima"}) {
        sources.append(
            QJsonObject{{QStringLiteral("name"), QLatin1String(name)},
                        {QStringLiteral("url"),
                         QStringLiteral("https://api.example.com/%1").arg(QLatin1String(name))},
                        {QStringLiteral("headers"),
                         QJsonObject{{QStringLiteral("X-Key"), QStringLiteral("k")}}}});
    }
    const QJsonObject definition{
        {QStringLiteral("name"), QStringLiteral("Large")},
        {QStringLiteral("sizes"), QJsonArray{QStringLiteral("grand"), QStringLiteral("small")}},
        {QStringLiteral("source"),
         QJsonObject{{QStringLiteral("url"), QStringLiteral("http://10.0.0.2/x")}}},
        {QStringLiteral("sources"), sources},
        {QStringLiteral("rows"), rows}};
    return QJsonDocument(definition).toJson();
}

void decode(benchmark::State& state) {
    const QByteArray json = largeDefinition();
    for (auto _ : state) {
        benchmark::DoNotOptimize(CustomWidgetDefinition::decode(json));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * json.size());
}

void sanitize(benchmark::State& state) {
    const CustomWidgetDefinition definition = *CustomWidgetDefinition::decode(largeDefinition());
    for (auto _ : state) {
        benchmark::DoNotOptimize(definition.sanitized());
    }
}

void validate(benchmark::State& state) {
    const CustomWidgetDefinition definition = *CustomWidgetDefinition::decode(largeDefinition());
    for (auto _ : state) {
        benchmark::DoNotOptimize(definition.issues());
    }
}

void encode(benchmark::State& state) {
    const CustomWidgetDefinition definition = *CustomWidgetDefinition::decode(largeDefinition());
    for (auto _ : state) {
        benchmark::DoNotOptimize(definition.fileJSON(CustomWidgetDefinition::Secrets::omitted));
    }
}

} // namespace

BENCHMARK(decode)->Unit(benchmark::kMicrosecond);
BENCHMARK(sanitize)->Unit(benchmark::kMicrosecond);
BENCHMARK(validate)->Unit(benchmark::kMicrosecond);
BENCHMARK(encode)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
