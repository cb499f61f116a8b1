#include "market/MarketServices.h"

#include "market/MarketText.h"
#include "text/L.h"

#include <memory>

namespace tw {

namespace {

// Runs `answer` once, at the first `signal` whose argument `matches`, unless `requester` is
// gone first.
template <typename Sender, typename Signal, typename Match>
void onceSettled(Sender* sender, Signal signal, const QObject* requester, Match matches,
                 std::function<void()> answer) {
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = QObject::connect(sender, signal, requester,
                                   [connection, matches, answer](const auto& settled) {
                                       if (matches(settled)) {
                                           QObject::disconnect(*connection);
                                           answer();
                                       }
                                   });
}

QString unreachableText(const QString& failure) {
    return L("market.check.unreachable", QStringLiteral("Could not ask the service: %1"))
        .arg(failure.isEmpty() ? L("market.check.noAnswer", QStringLiteral("no answer")) : failure);
}

} // namespace

MarketServices::MarketServices(const MarketFetch& fetch, QObject* parent)
    : QObject(parent)
    , m_stocks(fetch)
    , m_crypto(fetch)
    , m_currency(fetch) {
    connect(&m_stocks, &StockService::boardChanged, this, &MarketServices::publish);
    connect(&m_crypto, &CryptoService::boardChanged, this, &MarketServices::publish);
    connect(&m_currency, &CurrencyService::boardChanged, this, &MarketServices::publish);
}

void MarketServices::publish() {
    m_board = {m_stocks.board(), m_crypto.board(), m_currency.board()};
    Q_EMIT boardChanged();
}

void MarketServices::refresh(const MarketDemand& inView, const QDateTime& now) {
    for (const QString& symbol : inView.stocks) {
        m_stocks.refreshIfStale(symbol, now);
    }
    for (auto it = inView.coins.cbegin(); it != inView.coins.cend(); ++it) {
        m_crypto.refreshIfStale(it.value(), it.key(), now);
    }
    for (auto it = inView.rates.cbegin(); it != inView.rates.cend(); ++it) {
        m_currency.refreshIfStale(it.key(), it.value(), now);
    }
}

void MarketServices::suggest(const QString& kind, const QString& text, const QObject* requester,
                             StockService::Found done) {
    if (kind == QLatin1String("stocks")) {
        m_stocks.search(text, requester, std::move(done));
    } else if (kind == QLatin1String("crypto")) {
        done(QuoteSuggestion::coinsMatching(text), {});
    } else {
        done({}, {});
    }
}

void MarketServices::check(const QString& kind, const QString& key, const QString& text,
                           const WidgetSettings& settings, const QDateTime& now,
                           const QObject* requester, Checked done) {
    WidgetSettings asked = settings;
    asked.insert(key, text);
    if (kind == QLatin1String("stocks")) {
        const QString symbol = normalizedSymbol(text);
        if (symbol.isEmpty()) {
            done({false, L("stocks.check.empty", QStringLiteral("Type a symbol, like AAPL.")), {}});
            return;
        }
        m_stocks.refreshIfStale(symbol, now, true);
        if (!m_stocks.isInFlight(symbol)) {
            done(stockCheck(symbol));
            return;
        }
        onceSettled(
            &m_stocks, &StockService::settled, requester,
            [symbol](const QString& settled) { return settled == symbol; },
            [this, symbol, done] { done(stockCheck(symbol)); });
        return;
    }
    if (kind == QLatin1String("crypto")) {
        const std::optional<CryptoCoin> coin = CryptoCoin::coin(text);
        const QString currency = MarketSettings::coinCurrency(asked);
        if (!coin) {
            done({false,
                  L("crypto.check.unknown",
                    QStringLiteral("Not a coin this tile knows. Try BTC, ETH or SOL.")),
                  {}});
            return;
        }
        m_crypto.refreshIfStale({coin->id}, currency, now, true);
        if (!m_crypto.isInFlight(coin->id, currency)) {
            done(coinCheck(*coin, currency));
            return;
        }
        const QString wanted = CryptoQuote::key(coin->id, currency);
        onceSettled(
            &m_crypto, &CryptoService::settled, requester,
            [wanted](const QStringList& keys) { return keys.contains(wanted); },
            [this, coin = *coin, currency, done] { done(coinCheck(coin, currency)); });
        return;
    }
    if (kind == QLatin1String("currency")) {
        const QString base = MarketSettings::currencyBase(asked);
        QStringList targets;
        for (const QString& part : text.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
            const QString code = currencyCode(part);
            if (code.isEmpty()) {
                done({false,
                      L("currency.check.code",
                        QStringLiteral("“%1” is not a currency code: three letters, like USD."))
                          .arg(part.trimmed().left(12)),
                      {}});
                return;
            }
            if (code != base && !targets.contains(code)) {
                targets.append(code);
            }
        }
        if (targets.isEmpty()) {
            done({false,
                  L("currency.check.empty",
                    QStringLiteral("Name at least one currency other than %1."))
                      .arg(base),
                  {}});
            return;
        }
        m_currency.refreshIfStale(base, targets, now, true);
        if (!m_currency.isInFlight(base)) {
            done(ratesCheck(base, targets));
            return;
        }
        onceSettled(
            &m_currency, &CurrencyService::settled, requester,
            [base](const QString& settled) { return settled == base; },
            [this, base, targets, done] { done(ratesCheck(base, targets)); });
        return;
    }
    done({false, {}, {}});
}

QuoteCheck MarketServices::stockCheck(const QString& symbol) const {
    if (const std::optional<StockQuote> quote = m_stocks.quote(symbol);
        quote && !m_stocks.isUnknown(symbol) && !m_stocks.isUnreachable(symbol)) {
        return {true,
                quote->name + QStringLiteral(" · ") +
                    MarketText::price(quote->price, quote->currency),
                symbol};
    }
    if (m_stocks.isUnknown(symbol)) {
        return {
            false,
            L("stocks.unknown.hint",
              QStringLiteral("That symbol is not known. Indices start with a caret, like ^GDAXI.")),
            {}};
    }
    return {false, unreachableText(m_stocks.failure(symbol)), {}};
}

QuoteCheck MarketServices::coinCheck(const CryptoCoin& coin, const QString& currency) const {
    const QString key = CryptoQuote::key(coin.id, currency);
    const CryptoBoard& board = m_crypto.board();
    if (board.unreachable.contains(key)) {
        return {false, unreachableText(m_crypto.failure(coin.id, currency)), {}};
    }
    if (const auto it = board.quotes.constFind(key);
        it != board.quotes.cend() && !board.unknown.contains(key)) {
        return {true,
                coin.name + QStringLiteral(" · ") +
                    MarketText::price(it->price, currency.toUpper()),
                coin.id};
    }
    return {false,
            L("crypto.check.noPrice", QStringLiteral("The service has no price of %1 in %2."))
                .arg(coin.name, currency.toUpper()),
            {}};
}

QuoteCheck MarketServices::ratesCheck(const QString& base, const QStringList& targets) const {
    const CurrencyBoard& board = m_currency.board();
    const auto rates = board.latest.constFind(base);
    if (board.failed.contains(base) || rates == board.latest.cend()) {
        return {false, unreachableText(m_currency.failure(base)), {}};
    }
    QStringList missing;
    QStringList shown;
    for (const QString& code : targets) {
        if (rates->rates.contains(code)) {
            shown.append(QStringLiteral("1 %1 = %2 %3")
                             .arg(base, MarketText::rate(rates->rates.value(code)), code));
        } else {
            missing.append(code);
        }
    }
    if (!missing.isEmpty()) {
        return {false,
                L("currency.check.missing",
                  QStringLiteral("The central bank publishes no rate for %1."))
                    .arg(missing.join(QStringLiteral(", "))),
                {}};
    }
    return {true, shown.join(QStringLiteral(" · ")), targets.join(QLatin1Char(','))};
}

} // namespace tw
