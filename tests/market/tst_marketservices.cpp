#include "LoopbackHttpServer.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "MarketAnswers.h"
#include "TestRows.h"
#include "market/MarketServices.h"
#include "net/QtHttpClient.h"

#include <QLoggingCategory>
#include <QSignalSpy>
#include <QTest>
#include <QTimeZone>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;
using Answer = LoopbackHttpServer::Answer;

Q_DECLARE_METATYPE(tw::test::LoopbackHttpServer::Answer)

namespace {

constexpr char chartPath[] = "/stocks/v8/finance/chart/AAPL";

struct MarketRig {
    LoopbackHttpServer server;
    ManualClock clock{QDateTime(QDate(2026, 11, 24), QTime(12, 0), QTimeZone::utc())};
    ManualScheduler scheduler{&clock};
    QtHttpClient http{scheduler};
    Endpoints endpoints = Endpoints::under(server.url(QString()).toString());
    MarketServices market{{.http = http, .endpoints = endpoints, .clock = clock}};

    MarketRig() {
        server.route(chartPath, LoopbackHttpServer::ok(chartAnswer()));
        server.route("/crypto/api/v3/simple/price", LoopbackHttpServer::ok(coinAnswer));
        server.route("/currency/v1/latest", LoopbackHttpServer::ok(ratesAnswer));
    }
    int requestsTo(const QByteArray& path) const {
        int count = 0;
        for (const auto& request : server.requests()) {
            count += request.target.startsWith(path) ? 1 : 0;
        }
        return count;
    }
    QByteArray lastTarget() const { return server.requests().last().target; }
    // Waits for `count` answers to have been taken in.
    bool settles(QSignalSpy& changed, int count) {
        return QTest::qWaitFor([&] { return changed.size() >= count; }, 10'000);
    }
};

Answer withRetryAfter(const QByteArray& value) {
    Answer answer = LoopbackHttpServer::status(429);
    if (!value.isEmpty()) {
        answer.headers = {{"Retry-After", value}};
    }
    return answer;
}

} // namespace

class TestMarketServices : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QLoggingCategory::setFilterRules(u"Market.info=false"_qs); }

    // Ten tiles of one symbol, spelt their own ways, cost one request a minute; force passes the
    // age test but never a request in flight.
    void tilesShareOneRequest() {
        MarketRig rig;
        StockService& stocks = rig.market.stocks();
        QSignalSpy changed(&stocks, &StockService::boardChanged);
        for (int tile = 0; tile < 10; ++tile) {
            stocks.refreshIfStale(tile % 2 ? u" aapl "_qs : u"AAPL"_qs, rig.clock.now());
        }
        stocks.refreshIfStale(u"aapl"_qs, rig.clock.now(), true);
        QVERIFY(rig.settles(changed, 1));
        QCOMPARE(rig.requestsTo(chartPath), 1);
        QCOMPARE(rig.lastTarget(), QByteArray(chartPath) + "?range=1d&interval=15m");
        QVERIFY(rig.server.requests().last().header("User-Agent").startsWith("Mozilla/5.0"));
        QCOMPARE(stocks.quote(u"aapl"_qs)->price, 189.84);

        rig.clock.advance(59s);
        stocks.refreshIfStale(u"AAPL"_qs, rig.clock.now());
        QTest::qWait(50);
        QCOMPARE(rig.requestsTo(chartPath), 1);
        stocks.refreshIfStale(u"AAPL"_qs, rig.clock.now(), true);
        QVERIFY(rig.settles(changed, 2));
        rig.clock.advance(60s);
        stocks.refreshIfStale(u"AAPL"_qs, rig.clock.now());
        QVERIFY(rig.settles(changed, 3));
        QCOMPARE(rig.requestsTo(chartPath), 3);
    }

    // Whatever goes wrong after a good answer, the good quote stays and the sets say why.
    void failureKeepsTheQuote_data() {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<bool>("unknown");
        QTest::addColumn<bool>("unreachable");
        QTest::addColumn<double>("price");
        row("new price", LoopbackHttpServer::ok(chartAnswer("190.5")), false, false, 190.5);
        row("not found", LoopbackHttpServer::status(404, chartNotFound), true, false, 189.84);
        row("broken answer", LoopbackHttpServer::ok("{\"chart\":"), false, true, 189.84);
        row("server error", LoopbackHttpServer::status(502), false, true, 189.84);
        row("dropped mid-answer", LoopbackHttpServer::drop(chartAnswer()), false, true, 189.84);
        row("garbage", LoopbackHttpServer::garbage(), false, true, 189.84);
        row("too large", LoopbackHttpServer::huge(MarketFetch::maxBytes + 1), false, true, 189.84);
        row("silence", LoopbackHttpServer::stall(), false, true, 189.84);
    }
    void failureKeepsTheQuote() {
        QFETCH(Answer, answer);
        QFETCH(bool, unknown);
        QFETCH(bool, unreachable);
        QFETCH(double, price);
        MarketRig rig;
        StockService& stocks = rig.market.stocks();
        QSignalSpy changed(&stocks, &StockService::boardChanged);
        stocks.refreshIfStale(u"AAPL"_qs, rig.clock.now());
        QVERIFY(rig.settles(changed, 1));

        rig.server.route(chartPath, answer);
        rig.clock.advance(StockService::freshFor);
        stocks.refreshIfStale(u"AAPL"_qs, rig.clock.now());
        if (answer.kind == Answer::Kind::Stall) {
            QVERIFY(QTest::qWaitFor([&] { return rig.requestsTo(chartPath) == 2; }, 5000));
            rig.scheduler.advance(MarketFetch::timeout);
        }
        QVERIFY(rig.settles(changed, 2));
        QCOMPARE(stocks.isUnknown(u"AAPL"_qs), unknown);
        QCOMPARE(stocks.isUnreachable(u"AAPL"_qs), unreachable);
        QCOMPARE(stocks.quote(u"AAPL"_qs)->price, price);
        QCOMPARE(stocks.failure(u"AAPL"_qs).isEmpty(), !unreachable);
    }

    // A symbol never seen: a 404 or a priceless answer makes it unknown.
    void unknownSymbol() {
        MarketRig rig;
        rig.server.route("/stocks/v8/finance/chart/NOPE", LoopbackHttpServer::ok(chartNotFound));
        rig.server.route("/stocks/v8/finance/chart/%5EGDAXX",
                         LoopbackHttpServer::status(404, chartNotFound));
        StockService& stocks = rig.market.stocks();
        QSignalSpy changed(&stocks, &StockService::boardChanged);
        stocks.refreshIfStale(u"nope"_qs, rig.clock.now());
        stocks.refreshIfStale(u"^gdaxx"_qs, rig.clock.now());
        QVERIFY(rig.settles(changed, 2));
        QVERIFY(stocks.isUnknown(u"NOPE"_qs));
        QVERIFY(stocks.isUnknown(u"^GDAXX"_qs));
        QVERIFY(!stocks.quote(u"NOPE"_qs));
    }

    // A refusal keeps every store quiet for as long as it asks, force or not.
    void rateLimited_data() {
        QTest::addColumn<QByteArray>("retryAfter");
        QTest::addColumn<int>("quiet");
        row("with Retry-After", QByteArray("300"), 300);
        row("without", QByteArray(), int(FetchGate::defaultHoldOff.count()));
    }
    void rateLimited() {
        QFETCH(QByteArray, retryAfter);
        QFETCH(int, quiet);
        MarketRig rig;
        rig.server.route(chartPath, withRetryAfter(retryAfter));
        rig.server.route("/crypto/api/v3/simple/price", withRetryAfter(retryAfter));
        rig.server.route("/currency/v1/latest", withRetryAfter(retryAfter));
        QSignalSpy changed(&rig.market, &MarketServices::boardChanged);
        const MarketDemand demand{.stocks = {u"AAPL"_qs},
                                  .coins = {{u"usd"_qs, {u"bitcoin"_qs}}},
                                  .rates = {{u"EUR"_qs, {u"USD"_qs}}}};
        rig.market.refresh(demand, rig.clock.now());
        QVERIFY(rig.settles(changed, 3));
        QVERIFY(rig.market.board().stocks.unreachable.contains(u"AAPL"_qs));
        QVERIFY(rig.market.board().crypto.unreachable.contains(u"bitcoin/usd"_qs));
        QVERIFY(rig.market.board().currency.failed.contains(u"EUR"_qs));

        rig.clock.advance(std::chrono::seconds(quiet - 1));
        rig.market.refresh(demand, rig.clock.now());
        rig.market.stocks().refreshIfStale(u"AAPL"_qs, rig.clock.now(), true);
        QTest::qWait(50);
        QCOMPARE(rig.server.requests().size(), 3);
        rig.clock.advance(1s);
        rig.market.refresh(demand, rig.clock.now());
        QVERIFY(rig.settles(changed, 6));
        QCOMPARE(rig.server.requests().size(), 6);
    }

    // Coins of one currency go out together; a coin left out of the answer is unknown, and a
    // coin's prices build up a series.
    void coinsInOneRequest() {
        MarketRig rig;
        CryptoService& crypto = rig.market.crypto();
        QSignalSpy changed(&crypto, &CryptoService::boardChanged);
        crypto.refreshIfStale({u"bitcoin"_qs, u" Ethereum"_qs, u"nocoin"_qs}, u"USD"_qs,
                              rig.clock.now());
        crypto.refreshIfStale({u"bitcoin"_qs}, u"usd"_qs, rig.clock.now(), true);
        QVERIFY(rig.settles(changed, 1));
        QCOMPARE(rig.server.requests().size(), 1);
        QCOMPARE(rig.lastTarget(), QByteArray("/crypto/api/v3/simple/price?ids=bitcoin,ethereum,"
                                              "nocoin&vs_currencies=usd&include_24hr_change=true"));
        const CryptoBoard& board = crypto.board();
        QCOMPARE(board.quotes.value(u"bitcoin/usd"_qs).change24h, -1.2034);
        QCOMPARE(board.unknown, QSet<QString>{u"nocoin/usd"_qs});

        rig.clock.advance(CryptoService::freshFor);
        crypto.refreshIfStale({u"bitcoin"_qs}, u"usd"_qs, rig.clock.now());
        QVERIFY(rig.settles(changed, 2));
        QCOMPARE(board.quotes.value(u"bitcoin/usd"_qs).series, (QList<double>{67234.12, 67234.12}));
        QCOMPARE(board.quotes.value(u"ethereum/usd"_qs).series.size(), 1);
    }

    // An answer for another base never shows; the rates kept stay. A tile asking for a currency
    // the kept rates lack gets it within a minute, not an hour.
    void ratesOfTheBase() {
        MarketRig rig;
        CurrencyService& currency = rig.market.currency();
        QSignalSpy changed(&currency, &CurrencyService::boardChanged);
        currency.refreshIfStale(u"eur"_qs, {u"usd"_qs, u"GBP"_qs}, rig.clock.now());
        QVERIFY(rig.settles(changed, 1));
        QCOMPARE(rig.lastTarget(), QByteArray("/currency/v1/latest?base=EUR&symbols=USD,GBP"));
        const CurrencyRates kept = currency.board().latest.value(u"EUR"_qs);
        QCOMPARE(kept.rates.value(u"USD"_qs), 1.0842);

        currency.refreshIfStale(u"EUR"_qs, {u"SEK"_qs}, rig.clock.now());
        QTest::qWait(50);
        QCOMPARE(rig.server.requests().size(), 1);
        rig.server.route("/currency/v1/latest",
                         LoopbackHttpServer::ok(QByteArray(ratesAnswer).replace("EUR", "USD")));
        rig.clock.advance(CurrencyService::missingAfter);
        currency.refreshIfStale(u"EUR"_qs, {u"SEK"_qs}, rig.clock.now());
        QVERIFY(rig.settles(changed, 2));
        QVERIFY(rig.lastTarget().endsWith("symbols=SEK,CHF,GBP,JPY,USD"));
        QVERIFY(currency.board().failed.contains(u"EUR"_qs));
        QCOMPARE(currency.board().latest.value(u"EUR"_qs), kept);
    }

    // What the settings' field says of what a person typed.
    void check_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("says");
        QTest::addColumn<QString>("value");
        row("a share", "stocks", "symbol", " aapl", true, "Apple Inc. · $189.84", "AAPL");
        row("an unknown symbol", "stocks", "symbol", "nope", false, "Indices start with a caret",
            "");
        row("no symbol", "stocks", "symbol", "  ", false, "Type a symbol", "");
        row("a coin by ticker", "crypto", "coin", "eth", true, "Ethereum · $3,457", "ethereum");
        row("not a coin", "crypto", "coin", "dogs", false, "Not a coin", "");
        row("currencies", "currency", "to", "usd, jpy", true, "1 EUR = 1.0842 USD", "USD,JPY");
        row("not a code", "currency", "to", "usd, dollar", false, "“dollar” is not", "");
        row("not published", "currency", "to", "USD,XAU", false, "no rate for XAU", "");
    }
    void check() {
        QFETCH(QString, kind);
        QFETCH(QString, key);
        QFETCH(QString, text);
        QFETCH(bool, ok);
        QFETCH(QString, says);
        QFETCH(QString, value);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        MarketRig rig;
        rig.server.route("/stocks/v8/finance/chart/NOPE",
                         LoopbackHttpServer::status(404, chartNotFound));
        std::optional<QuoteCheck> result;
        rig.market.check(kind, key, text, {}, rig.clock.now(), this,
                         [&](const QuoteCheck& check) { result = check; });
        QVERIFY(QTest::qWaitFor([&] { return result.has_value(); }, 10'000));
        QCOMPARE(result->ok, ok);
        QVERIFY2(result->text.contains(says), qPrintable(result->text));
        QCOMPARE(result->value, value);
    }
};

QTEST_GUILESS_MAIN(TestMarketServices)
#include "tst_marketservices.moc"
