// A match offered while a person types a share's symbol or a coin into a tile's settings.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace tw {

struct QuoteSuggestion {
    // A person picks no more than a handful from a list that long.
    static constexpr qsizetype mostShown = 8;

    // What the field takes when picked ("AAPL", "bitcoin").
    QString value;
    // "AAPL · Apple Inc."
    QString title;
    // "Equity · NASDAQ"
    QString detail;

    bool operator==(const QuoteSuggestion&) const = default;

    // The matches of a chart service's symbol search, in its order, at most `mostShown`, each
    // symbol once. Lenient: an entry without a usable symbol is skipped, a missing name or
    // exchange left out.
    static QList<QuoteSuggestion> fromStockSearch(const QByteArray& answer);
    // The coins of the table whose ticker, id or name begins with `text` (any case), tickers
    // first.
    static QList<QuoteSuggestion> coinsMatching(const QString& text);
};

} // namespace tw
