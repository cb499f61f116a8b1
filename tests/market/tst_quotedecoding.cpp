#include "MarketAnswers.h"
#include "TestRows.h"
#include "market/CryptoQuote.h"
#include "market/CurrencyRates.h"
#include "market/FetchGate.h"
#include "market/MarketSettings.h"
#include "market/MarketText.h"
#include "market/QuoteSuggestion.h"
#include "market/StockQuote.h"

#include <QTest>
#include <QTimeZone>

using namespace tw;
using namespace tw::test;

namespace {

const QDateTime noon(QDate(2026, 11, 24), QTime(12, 0), QTimeZone::utc());

QByteArray chartWith(const QByteArray& meta, const QByteArray& closes = "[1,2]") {
    return R"({"chart":{"result":[{"meta":)" + meta + R"(,"indicators":{"quote":[{"close":)" +
           closes + "}]}}]}}";
}

} // namespace

class TestQuoteDecoding : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    // The chart answer: what a tile needs, leniently; no price, no quote.
    void chart_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<bool>("quoted");
        QTest::addColumn<QString>("name");
        QTest::addColumn<double>("previous");
        QTest::addColumn<int>("points");
        row("real answer", chartAnswer(), true, "Apple Inc.", 188.63, 3);
        row("previous close as fallback",
            chartWith(R"({"regularMarketPrice":10,"previousClose":9,"longName":"Long"})"), true,
            "Long", 9.0, 2);
        row("no names: the symbol", chartWith(R"({"regularMarketPrice":10,"shortName":7})"), true,
            "AAPL", 0.0, 2);
        row("odd closes dropped",
            chartWith(R"({"regularMarketPrice":10})", R"([null,"3",-1,0,4,{}])"), true, "AAPL", 0.0,
            1);
        row("series capped",
            chartWith(R"({"regularMarketPrice":10})", "[" + QByteArray("1,").repeated(1000) + "1]"),
            true, "AAPL", 0.0, int(StockQuote::maxSeries));
        row("price as text", chartWith(R"({"regularMarketPrice":"10"})"), false, "", 0.0, 0);
        row("price zero", chartWith(R"({"regularMarketPrice":0})"), false, "", 0.0, 0);
        row("not found", chartNotFound, false, "", 0.0, 0);
        row("half written", chartAnswer().left(180), false, "", 0.0, 0);
        row("not JSON", QByteArray("<html>rate limited</html>"), false, "", 0.0, 0);
    }
    void chart() {
        QFETCH(QByteArray, answer);
        QFETCH(bool, quoted);
        QFETCH(QString, name);
        QFETCH(double, previous);
        QFETCH(int, points);
        const std::optional<StockQuote> quote = StockQuote::fromChart(answer, u" aapl "_qs, noon);
        QCOMPARE(bool(quote), quoted);
        if (quote) {
            QCOMPARE(quote->symbol, u"AAPL"_qs);
            QCOMPARE(quote->name, name);
            QCOMPARE(quote->previousClose, previous);
            QCOMPARE(quote->series.size(), points);
            QCOMPARE(quote->updated, noon);
        }
    }

    // What a symbol search offers: usable symbols once each, in the service's order, at most
    // eight; the coin table by ticker first, then by id or name.
    void suggestions_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("coinText");
        QTest::addColumn<QStringList>("values");
        QTest::addColumn<QStringList>("titles");
        row("real answer", QByteArray(R"({"quotes":[
                {"exchange":"NMS","shortname":"Apple Inc.","quoteType":"EQUITY","symbol":"AAPL",
                 "exchDisp":"NASDAQ","typeDisp":"Equity"},
                {"exchange":"GER","longname":"Apple Inc.","quoteType":"EQUITY","symbol":"apc.de"}],
                "news":[{"title":"x"}]})"),
            "", QStringList{u"AAPL"_qs, u"APC.DE"_qs},
            QStringList{u"AAPL · Apple Inc."_qs, u"APC.DE · Apple Inc."_qs});
        row("unusable entries skipped", QByteArray(R"({"quotes":[{"symbol":"A B"},{"symbol":7},
                {"shortname":"No symbol"},{"symbol":"MSFT"},{"symbol":"msft"},
                {"symbol":"ABCDEFGHIJKLMNOPQRSTUVWXYZ"},[1]]})"),
            "", QStringList{u"MSFT"_qs}, QStringList{u"MSFT"_qs});
        row("capped",
            "{\"quotes\":[" + QByteArray(R"({"symbol":"X"},)").repeated(3) +
                R"({"symbol":"A1"},{"symbol":"A2"},{"symbol":"A3"},{"symbol":"A4"},
                          {"symbol":"A5"},{"symbol":"A6"},{"symbol":"A7"},{"symbol":"A8"}]})",
            "",
            QStringList{u"X"_qs, u"A1"_qs, u"A2"_qs, u"A3"_qs, u"A4"_qs, u"A5"_qs, u"A6"_qs,
                        u"A7"_qs},
            QStringList{u"X"_qs, u"A1"_qs, u"A2"_qs, u"A3"_qs, u"A4"_qs, u"A5"_qs, u"A6"_qs,
                        u"A7"_qs});
        row("broken", QByteArray(R"({"quotes":{"symbol":"AAPL"}})"), "", QStringList{},
            QStringList{});
        row("coin by ticker", QByteArray(), "eth", QStringList{u"ethereum"_qs},
            QStringList{u"ETH · Ethereum"_qs});
        row("coin by name", QByteArray(), "  dogeC", QStringList{u"dogecoin"_qs},
            QStringList{u"DOGE · Dogecoin"_qs});
        row("no coin", QByteArray(), "zzz", QStringList{}, QStringList{});
    }
    void suggestions() {
        QFETCH(QByteArray, answer);
        QFETCH(QString, coinText);
        const QList<QuoteSuggestion> found = coinText.isEmpty()
                                                 ? QuoteSuggestion::fromStockSearch(answer)
                                                 : QuoteSuggestion::coinsMatching(coinText);
        QStringList values;
        QStringList titles;
        for (const QuoteSuggestion& suggestion : found) {
            values << suggestion.value;
            titles << suggestion.title;
        }
        QTEST(values, "values");
        QTEST(titles, "titles");
    }

    void coins() {
        const auto quotes = CryptoQuote::fromSimplePrice(
            R"({"bitcoin":{"usd":67234.12,"usd_24h_change":-1.2},"ethereum":{"usd":3456.7,
                "usd_24h_change":"2"},"dogecoin":{"usd":"0.1"},"solana":{"eur":140},
                "monero":{"usd":150}})",
            {u"bitcoin"_qs, u"ethereum"_qs, u"dogecoin"_qs, u"solana"_qs}, u"USD"_qs, noon);
        QCOMPARE(quotes.keys().size(), 2); // monero was not asked for
        QCOMPARE(quotes.value(u"bitcoin"_qs).price, 67234.12);
        QCOMPARE(quotes.value(u"bitcoin"_qs).change24h, -1.2);
        QCOMPARE(quotes.value(u"ethereum"_qs).change24h, std::nullopt);
        QCOMPARE(quotes.value(u"ethereum"_qs).currency, u"usd"_qs);
        QVERIFY(CryptoQuote::fromSimplePrice("[1]", {u"bitcoin"_qs}, u"usd"_qs, noon).isEmpty());
    }

    // Rates under the base asked for or none at all.
    void rates_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("expecting");
        QTest::addColumn<QStringList>("codes");
        QTest::addColumn<QDate>("day");
        row("real answer", ratesAnswer, "eur",
            QStringList{u"CHF"_qs, u"GBP"_qs, u"JPY"_qs, u"USD"_qs}, QDate(2026, 11, 23));
        row("another base", ratesAnswer, "USD", QStringList(), QDate());
        row("odd entries left out",
            QByteArray(
                R"({"base":"usd","date":"soon","rates":{"eur":0.9,"X":1,"GBP":-1,"JPY":"150"}})"),
            "USD", QStringList{u"EUR"_qs}, QDate());
        row("no rates", QByteArray(R"({"base":"EUR","date":"2026-11-23"})"), "EUR", QStringList(),
            QDate());
        row("no base", QByteArray(R"({"rates":{"USD":1.1}})"), "EUR", QStringList(), QDate());
    }
    void rates() {
        QFETCH(QByteArray, answer);
        QFETCH(QString, expecting);
        QFETCH(QStringList, codes);
        QFETCH(QDate, day);
        const std::optional<CurrencyRates> rates = CurrencyParser::parse(answer, expecting, noon);
        QCOMPARE(bool(rates), !codes.isEmpty());
        if (rates) {
            QCOMPARE(rates->base, expecting.toUpper());
            QCOMPARE(rates->rates.keys(), codes);
            QCOMPARE(rates->day, day);
            QCOMPARE(rates->fetched, noon);
        }
    }

    void retryAfter_data() {
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<int>("seconds");
        row("seconds", QByteArray("300"), 300);
        row("zero waits a second", QByteArray("0"), 1);
        row("a day is an hour", QByteArray("86400"), 3600);
        row("HTTP date", QByteArray("Tue, 24 Nov 2026 12:01:30 GMT"), 90);
        row("date passed", QByteArray("Tue, 24 Nov 2026 11:00:00 GMT"), 1);
        row("unreadable", QByteArray("soon"), 120);
        row("absent", QByteArray(), 120);
    }
    void retryAfter() {
        QFETCH(QByteArray, header);
        QFETCH(int, seconds);
        HttpResponse refusal;
        refusal.status = 429;
        if (!header.isEmpty()) {
            refusal.headers = {{"retry-after", header}};
        }
        QCOMPARE(tw::retryAfter(refusal, noon).count(), seconds);
    }

    void text_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        row("dollars", MarketText::price(189.843, u"USD"_qs), "$189.84");
        row("large, no cents", MarketText::price(67234.12, u"eur"_qs), "€67,234");
        row("small, four figures", MarketText::price(0.000012346, u"CHF"_qs), "0.00001235 CHF");
        row("no currency", MarketText::price(12.5, QString()), "12.50");
        row("rise", MarketText::change(1.21, u"USD"_qs), "+$1.21");
        row("fall", MarketText::change(-0.5, QString()), "−0.50");
        row("percent", MarketText::percent(-1.2034), "−1.20%");
        row("rate", MarketText::rate(1.08421), "1.0842");
        row("yen rate", MarketText::rate(162.449), "162.45");
        row("age", MarketText::age(noon, noon.addSecs(330)), "5 min ago");
        row("age in days", MarketText::age(noon, noon.addDays(2)), "2 d ago");
    }
    void text() {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(text, expected);
    }

    // What tiles ask for, joined: one list per store, nothing twice.
    void demand() {
        MarketDemand all;
        all.add(MarketDemand::of(u"stocks"_qs, {{u"symbol"_qs, u" msft "_qs}}));
        all.add(MarketDemand::of(u"stocks"_qs, {{u"symbol"_qs, u"MSFT"_qs}}));
        all.add(MarketDemand::of(u"crypto"_qs, {{u"coin"_qs, u"ETH"_qs}}));
        all.add(MarketDemand::of(u"crypto"_qs, {}));
        all.add(MarketDemand::of(u"currency"_qs, {{u"to"_qs, u"usd, eur,xx,gbp,USD"_qs}}));
        all.add(MarketDemand::of(u"clock"_qs, {{u"symbol"_qs, u"X"_qs}}));
        QCOMPARE(all.stocks, QStringList{u"MSFT"_qs});
        QCOMPARE(all.coins.value(u"usd"_qs),
                 (QStringList{u"ethereum"_qs, u"bitcoin"_qs, u"binancecoin"_qs, u"solana"_qs}));
        QCOMPARE(all.rates.value(u"EUR"_qs), (QStringList{u"USD"_qs, u"GBP"_qs}));
        QCOMPARE(MarketSettings::currencyTargets({{u"base"_qs, u"USD"_qs}}),
                 (QStringList{u"GBP"_qs, u"CHF"_qs, u"JPY"_qs}));
    }
};

QTEST_GUILESS_MAIN(TestQuoteDecoding)
#include "tst_quotedecoding.moc"
