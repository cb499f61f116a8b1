// Decoding the quote answers at their largest: a chart answer near the 1 MiB cap (a long day with
// every column the service sends), a coin answer of a hundred coins, and the full table of
// reference rates.
#include "market/CryptoQuote.h"
#include "market/CurrencyRates.h"
#include "market/MarketFetch.h"
#include "market/StockQuote.h"

#include <QStringList>

#include <benchmark/benchmark.h>

using namespace tw;

namespace {

const QDateTime kNow(QDate(2026, 11, 24), QTime(15, 30));

// A chart answer of `points` intervals with the columns the service sends, nulls now and then.
QByteArray chart(int points) {
    QByteArray times;
    QByteArray closes;
    for (int i = 0; i < points; ++i) {
        const QByteArray sep = i == 0 ? QByteArray() : QByteArray(",");
        times += sep + QByteArray::number(1763994600 + 60 * i);
        closes += sep + (i % 37 == 5 ? QByteArray("null")
                                     : QByteArray::number(189.0 + (i % 50) * 0.013, 'f', 4));
    }
    const QByteArray column = "[" + closes + "]";
    return R"({"chart":{"result":[{"meta":{"currency":"USD","symbol":"AAPL",)"
           R"("regularMarketPrice":189.84,"chartPreviousClose":188.63,"shortName":"Apple Inc."},)"
           R"("timestamp":[)" +
           times + R"(],"indicators":{"quote":[{"open":)" + column + R"(,"high":)" + column +
           R"(,"low":)" + column + R"(,"close":)" + column + R"(,"volume":)" + column +
           R"(}]}}],"error":null}})";
}

void chartDecode(benchmark::State& state) {
    const QByteArray answer = chart(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(StockQuote::fromChart(answer, QStringLiteral("AAPL"), kNow));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * answer.size());
    state.counters["answer_KiB"] = static_cast<double>(answer.size()) / 1024;
}

void coinDecode(benchmark::State& state) {
    QByteArray answer = "{";
    QStringList ids;
    for (int i = 0; i < CryptoQuote::maxCoins; ++i) {
        const QByteArray id = "coin-" + QByteArray::number(i);
        ids.append(QString::fromLatin1(id));
        answer += (i ? "," : "") + QByteArray("\"") + id + R"(":{"usd":)" +
                  QByteArray::number(100.0 + i, 'f', 2) + R"(,"usd_24h_change":-1.25})";
    }
    answer += "}";
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            CryptoQuote::fromSimplePrice(answer, ids, QStringLiteral("usd"), kNow));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * answer.size());
}

void ratesDecode(benchmark::State& state) {
    QByteArray answer = R"({"amount":1.0,"base":"EUR","date":"2026-11-23","rates":{)";
    for (int i = 0; i < 30; ++i) {
        answer += (i ? "," : "") + QByteArray("\"") + char('A' + i % 26) + char('A' + i / 26) +
                  "X\":" + QByteArray::number(1.0 + i * 0.37, 'f', 4);
    }
    answer += "}}";
    for (auto _ : state) {
        benchmark::DoNotOptimize(CurrencyParser::parse(answer, QStringLiteral("EUR"), kNow));
    }
}

} // namespace

// A day of 15-minute intervals as asked for; a week of minutes; near the 1 MiB cap.
BENCHMARK(chartDecode)->Arg(26)->Arg(2730)->Arg(18500)->Unit(benchmark::kMicrosecond);
BENCHMARK(coinDecode)->Unit(benchmark::kMicrosecond);
BENCHMARK(ratesDecode)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
