#include "market/MarketSample.h"

#include "market/MarketSettings.h"

#include <cmath>

namespace tw {

namespace {

// A day that wanders around `open` and ends at `close`, the same every time.
QList<double> day(double open, double close, qsizetype points, double seed) {
    QList<double> values;
    for (qsizetype i = 0; i < points; ++i) {
        const double t = static_cast<double>(i) / static_cast<double>(points - 1);
        const double wander =
            std::sin(t * 9.1 + seed) * 0.35 + std::sin(t * 23.7 + seed * 2) * 0.15;
        values.append(open + (close - open) * t + std::abs(close - open) * wander * (1 - t));
    }
    return values;
}

StockQuote share(const QString& symbol, const QString& name, double previous, double price,
                 const QDateTime& now) {
    return {.symbol = symbol,
            .name = name,
            .price = price,
            .previousClose = previous,
            .currency = QStringLiteral("USD"),
            .series = day(previous, price, 26, price),
            .updated = now};
}

struct Coin {
    const char* id;
    double usd;
    double change;
};

constexpr Coin coins[] = {
    {"bitcoin", 67234.12, -1.2}, {"ethereum", 3456.7, 2.51}, {"binancecoin", 590.31, 0.42},
    {"solana", 145.2, 5.18},     {"ripple", 0.5231, -0.8},   {"cardano", 0.4512, 1.1},
    {"dogecoin", 0.1234, 3.4},   {"tron", 0.1187, -0.3},     {"avalanche-2", 27.4, -2.2},
    {"polkadot", 5.91, 0.6},     {"chainlink", 13.8, 1.9},   {"litecoin", 71.2, -0.4},
    {"stellar", 0.0981, 0.2},    {"monero", 162.5, 0.9},     {"tether", 1.0002, 0.01},
    {"usd-coin", 0.9999, 0.0}};

// What one euro buys.
const QMap<QString, double>& euroRates() {
    static const QMap<QString, double> rates{
        {QStringLiteral("AUD"), 1.6512}, {QStringLiteral("CAD"), 1.4903},
        {QStringLiteral("CHF"), 0.9412}, {QStringLiteral("CNY"), 7.8123},
        {QStringLiteral("CZK"), 25.312}, {QStringLiteral("DKK"), 7.4591},
        {QStringLiteral("GBP"), 0.8531}, {QStringLiteral("HKD"), 8.4402},
        {QStringLiteral("INR"), 90.871}, {QStringLiteral("JPY"), 162.45},
        {QStringLiteral("KRW"), 1472.3}, {QStringLiteral("NOK"), 11.702},
        {QStringLiteral("NZD"), 1.8214}, {QStringLiteral("PLN"), 4.3107},
        {QStringLiteral("SEK"), 11.483}, {QStringLiteral("SGD"), 1.4568},
        {QStringLiteral("USD"), 1.0842}};
    return rates;
}

CurrencyRates ratesOf(const QString& base, const QDateTime& now) {
    CurrencyRates rates{.base = base, .rates = {}, .day = now.date().addDays(-1), .fetched = now};
    const double perEuro = base == QLatin1String("EUR") ? 1.0 : euroRates().value(base, 1.0);
    QMap<QString, double> all = euroRates();
    all.insert(QStringLiteral("EUR"), 1.0);
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        if (it.key() != base) {
            rates.rates.insert(it.key(), it.value() / perEuro);
        }
    }
    return rates;
}

} // namespace

MarketBoard sampleMarket(const QDateTime& now, const WidgetSettings& settings) {
    MarketBoard board;
    const StockQuote apple =
        share(QStringLiteral("AAPL"), QStringLiteral("Apple Inc."), 188.63, 189.84, now);
    board.stocks.quotes.insert(apple.symbol, apple);
    const QString symbol = MarketSettings::stockSymbol(settings);
    if (symbol != apple.symbol) {
        board.stocks.quotes.insert(symbol, share(symbol, symbol, 102.4, 101.15, now));
    }

    const QString currency = MarketSettings::coinCurrency(settings);
    const double perDollar =
        currency == QLatin1String("usd")
            ? 1.0
            : euroRates().value(currency.toUpper(), 1.0) / euroRates().value(QStringLiteral("USD"));
    for (const Coin& coin : coins) {
        const double price = coin.usd * perDollar;
        board.crypto.quotes.insert(
            CryptoQuote::key(QLatin1String(coin.id), currency),
            CryptoQuote{.price = price,
                        .change24h = coin.change,
                        .currency = currency,
                        .updated = now,
                        .series = day(price / (1 + coin.change / 100), price, 40, coin.usd)});
    }

    const QString base = MarketSettings::currencyBase(settings);
    board.currency.latest.insert(base, ratesOf(base, now));
    return board;
}

} // namespace tw
