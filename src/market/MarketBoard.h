// What the three quote stores publish, as faces draw it. Plain values: the host keeps one up to
// date from its services, a picture fills its own.
#pragma once

#include "market/CryptoQuote.h"
#include "market/CurrencyRates.h"
#include "market/StockQuote.h"

#include <QHash>
#include <QSet>
#include <QString>

namespace tw {

struct StockBoard {
    // By normalized symbol; a quote stays through later failures.
    QHash<QString, StockQuote> quotes;
    // Symbols the service does not know.
    QSet<QString> unknown;
    // Symbols whose last fetch failed; their quote, if any, is the last good one.
    QSet<QString> unreachable;

    bool operator==(const StockBoard&) const = default;
};

struct CryptoBoard {
    // By `CryptoQuote::key`.
    QHash<QString, CryptoQuote> quotes;
    // Keys the service answered without a price for.
    QSet<QString> unknown;
    QSet<QString> unreachable;

    bool operator==(const CryptoBoard&) const = default;
};

struct CurrencyBoard {
    // By upper-case base.
    QHash<QString, CurrencyRates> latest;
    // Bases whose last fetch failed.
    QSet<QString> failed;

    bool operator==(const CurrencyBoard&) const = default;
};

struct MarketBoard {
    StockBoard stocks;
    CryptoBoard crypto;
    CurrencyBoard currency;

    bool operator==(const MarketBoard&) const = default;
};

} // namespace tw
