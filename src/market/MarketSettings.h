// What a Stocks, Crypto or Currency tile shows, read from its settings, and what all the tiles in
// view ask of the quote stores together.
#pragma once

#include "market/CryptoCoin.h"
#include "model/WidgetInstance.h"

#include <QHash>
#include <QStringList>

namespace tw {

namespace MarketSettings {

// The coins a large Crypto tile lists, and so the ones every Crypto tile asks for.
inline constexpr qsizetype coinRowsShown = 4;

// "symbol", normalized; "AAPL" when unset.
QString stockSymbol(const WidgetSettings& settings);
// "coin" as the table's entry, else as the id given (which the service may not know); Bitcoin
// when unset.
CryptoCoin coin(const WidgetSettings& settings);
// "vs", lower-case; "usd" when unset.
QString coinCurrency(const WidgetSettings& settings);
// The tile's coin first, then the most traded others, `count` in all: the rows of a large tile.
QList<CryptoCoin> coinRows(const WidgetSettings& settings, qsizetype count);
// "base" as a currency code; "EUR" when unset or unreadable.
QString currencyBase(const WidgetSettings& settings);
// "to", a comma list of currency codes without the base or repeats; unreadable codes are left
// out, and an empty list is "USD,GBP,CHF,JPY".
QStringList currencyTargets(const WidgetSettings& settings);

} // namespace MarketSettings

struct MarketDemand {
    QStringList stocks;
    // Coin ids by lower-case currency.
    QHash<QString, QStringList> coins;
    // Target codes by base.
    QHash<QString, QStringList> rates;

    // What one tile of `kind` with these settings shows; nothing for other kinds.
    static MarketDemand of(const QString& kind, const WidgetSettings& settings);
    void add(const MarketDemand& other);
    bool isEmpty() const { return stocks.isEmpty() && coins.isEmpty() && rates.isEmpty(); }

    bool operator==(const MarketDemand&) const = default;
};

} // namespace tw
