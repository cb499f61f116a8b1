// The quote answers: whatever bytes arrive, a share's quote has a positive price, a capped series
// of positive closes and a percentage only with a previous close; coins only those asked for,
// each priced; rates only under the base asked for, with positive rates under currency codes; a
// symbol search offers at most eight symbols, each once, with nothing blank or spaced in them.
#include "Require.h"
#include "market/CryptoQuote.h"
#include "market/CurrencyRates.h"
#include "market/QuoteSuggestion.h"
#include "market/StockQuote.h"

#include <QByteArray>
#include <QTimeZone>

#include <cmath>
#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QDateTime now(QDate(2026, 11, 24), QTime(12, 0), QTimeZone::utc());

    if (const std::optional<tw::StockQuote> quote =
            tw::StockQuote::fromChart(bytes, QStringLiteral("aapl"), now)) {
        require(quote->price > 0 && std::isfinite(quote->price), "a share without a price");
        require(quote->symbol == QLatin1String("AAPL"), "the symbol not normalized");
        require(!quote->name.isEmpty(), "a share without a name");
        require(quote->series.size() <= tw::StockQuote::maxSeries, "closes past the cap");
        for (const double close : quote->series) {
            require(close > 0 && std::isfinite(close), "a close that is no price");
        }
        require(quote->percent().has_value() == (quote->previousClose > 0),
                "a percentage without a previous close");
    }

    const QList<tw::QuoteSuggestion> matches = tw::QuoteSuggestion::fromStockSearch(bytes);
    require(matches.size() <= tw::QuoteSuggestion::mostShown, "matches past the cap");
    QStringList symbols;
    for (const tw::QuoteSuggestion& match : matches) {
        require(!match.value.isEmpty() && !match.value.contains(QLatin1Char(' ')),
                "a symbol no chart can be asked for");
        require(!symbols.contains(match.value), "a symbol offered twice");
        symbols << match.value;
    }

    const QStringList ids{QStringLiteral("bitcoin"), QStringLiteral("ethereum")};
    const auto coins = tw::CryptoQuote::fromSimplePrice(bytes, ids, QStringLiteral("usd"), now);
    for (auto it = coins.cbegin(); it != coins.cend(); ++it) {
        require(ids.contains(it.key()), "a coin not asked for");
        require(it->price > 0 && std::isfinite(it->price), "a coin without a price");
        require(!it->change24h || std::isfinite(*it->change24h), "a change that is no number");
    }

    if (const std::optional<tw::CurrencyRates> rates =
            tw::CurrencyParser::parse(bytes, QStringLiteral("eur"), now)) {
        require(rates->base == QLatin1String("EUR"), "rates under another base");
        require(rates->rates.size() <= tw::CurrencyRates::maxRates, "rates past the cap");
        for (auto it = rates->rates.cbegin(); it != rates->rates.cend(); ++it) {
            require(tw::currencyCode(it.key()) == it.key(), "a rate under no currency code");
            require(it.value() > 0 && std::isfinite(it.value()), "a rate that is no rate");
        }
    }
    return 0;
}
