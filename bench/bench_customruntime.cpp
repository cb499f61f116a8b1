// What the custom widgets' runtime costs per tick once its sources are fetched: 20 tiles in view
// sharing 5 sources, each tile with a sparkline, so that every tick is the due-checks alone and
// every 15th second adds a history point per tile.
#include "custom/CustomWidgetRuntime.h"
#include "net/HttpClient.h"
#include "platform/Clock.h"
#include "readings/ReadingsBoard.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

using namespace tw;

namespace {

// Answers every request at once with one small document; only the runtime is measured.
class InstantClient final : public HttpClient {
public:
    void get(const HttpRequest& request, const QObject*, Completion done) override {
        HttpResponse response;
        response.status = 200;
        response.url = request.url;
        response.body = R"({"value": 21.5, "items": [{"title": "a"}, {"title": "b"}]})";
        done(response);
    }
};

class StepClock final : public Clock {
public:
    QDateTime now() const override { return m_now; }
    std::chrono::nanoseconds uptime() const override { return {}; }
    void advance(qint64 msecs) { m_now = m_now.addMSecs(msecs); }

private:
    QDateTime m_now{QDate(2026, 11, 24), QTime(9, 30)};
};

QList<CustomWidgetDefinition> twentyTiles() {
    QList<CustomWidgetDefinition> definitions;
    for (int tile = 0; tile < 20; ++tile) {
        CustomWidgetDefinition definition;
        definition.name = QStringLiteral("Tile %1").arg(tile);
        CustomSource source;
        source.url = QStringLiteral("https://feeds.example/%1.json").arg(tile % 5);
        source.refreshSeconds = 300;
        definition.source = source;
        CustomRow row;
        for (const auto type : {CustomElementType::text, CustomElementType::sparkline}) {
            CustomElement element;
            element.type = type;
            element.text = QStringLiteral("{data:value}");
            row.elements.append(element);
        }
        definition.rows = {row};
        definitions.append(definition);
    }
    return definitions;
}

void BM_RuntimeTick(benchmark::State& state) {
    InstantClient http;
    StepClock clock;
    ReadingsBoard readings;
    CustomWidgetRuntime runtime(http, clock, &readings);
    const QList<CustomWidgetDefinition> definitions = twentyTiles();
    runtime.setDefinitions(definitions);
    QStringList kinds;
    for (const CustomWidgetDefinition& definition : definitions) {
        kinds.append(definition.kind());
    }
    runtime.refresh(clock.now(), kinds);
    for (auto _ : state) {
        clock.advance(1000);
        runtime.refresh(clock.now(), kinds);
    }
    state.counters["sources"] = double(runtime.board().sources.size());
}
BENCHMARK(BM_RuntimeTick);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
