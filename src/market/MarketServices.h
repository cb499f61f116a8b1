// The three quote stores of the program, published as one board; refreshes what the tiles in
// view show and checks what a person types into a tile's settings.
#pragma once

#include "market/CryptoService.h"
#include "market/CurrencyService.h"
#include "market/MarketSettings.h"
#include "market/QuoteCheck.h"
#include "market/StockService.h"

#include <QObject>

#include <functional>

namespace tw {

class MarketServices final : public QObject {
    Q_OBJECT
public:
    using Checked = std::function<void(const QuoteCheck&)>;

    explicit MarketServices(const MarketFetch& fetch, QObject* parent = nullptr);

    const MarketBoard& board() const { return m_board; }
    StockService& stocks() { return m_stocks; }
    CryptoService& crypto() { return m_crypto; }
    CurrencyService& currency() { return m_currency; }

    // Asks each store for what the tiles in view show: each symbol, one request per currency of
    // coins, one per base, each only where stale.
    void refresh(const MarketDemand& inView, const QDateTime& now);

    // Checks `text` as the `key` setting of a tile of `kind` ("symbol" of stocks, "coin" of
    // crypto, "to" of currency, with the tile's `settings` for the rest) against the service;
    // `done` runs once, unless `requester` goes first.
    void check(const QString& kind, const QString& key, const QString& text,
               const WidgetSettings& settings, const QDateTime& now, const QObject* requester,
               Checked done);

    // What `text` typed as the symbol of a tile of `kind` may mean: the service's search for
    // shares, the table for coins, nothing for currencies; `done` runs once, unless `requester`
    // goes first.
    void suggest(const QString& kind, const QString& text, const QObject* requester,
                 StockService::Found done);

Q_SIGNALS:
    void boardChanged();

private:
    void publish();
    QuoteCheck stockCheck(const QString& symbol) const;
    QuoteCheck coinCheck(const CryptoCoin& coin, const QString& currency) const;
    QuoteCheck ratesCheck(const QString& base, const QStringList& targets) const;

    StockService m_stocks;
    CryptoService m_crypto;
    CurrencyService m_currency;
    MarketBoard m_board;
};

} // namespace tw
