#include "market/QuoteSuggestion.h"

#include "market/CryptoCoin.h"
#include "market/JsonNumbers.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

namespace tw {

namespace {

// Longer than any ticker with its exchange suffix ("BRK-B", "VOW3.DE", "^GSPC").
constexpr qsizetype longestSymbol = 24;

// A symbol a chart can be asked for: printable, no blanks, not too long.
bool isUsableSymbol(const QString& symbol) {
    if (symbol.isEmpty() || symbol.size() > longestSymbol) {
        return false;
    }
    return std::all_of(symbol.cbegin(), symbol.cend(),
                       [](QChar c) { return c.isPrint() && !c.isSpace(); });
}

QString joined(const QString& first, const QString& second) {
    if (first.isEmpty() || second.isEmpty()) {
        return first.isEmpty() ? second : first;
    }
    return first + QStringLiteral(" · ") + second;
}

} // namespace

QList<QuoteSuggestion> QuoteSuggestion::fromStockSearch(const QByteArray& answer) {
    const QJsonArray quotes = QJsonDocument::fromJson(answer).object().value(u"quotes").toArray();
    QList<QuoteSuggestion> found;
    QSet<QString> seen;
    for (const QJsonValue& entry : quotes) {
        const QJsonObject quote = entry.toObject();
        const QString symbol = shortText(quote.value(u"symbol")).toUpper();
        if (!isUsableSymbol(symbol) || seen.contains(symbol)) {
            continue;
        }
        seen.insert(symbol);
        QString name = shortText(quote.value(u"shortname"));
        if (name.isEmpty()) {
            name = shortText(quote.value(u"longname"));
        }
        QString type = shortText(quote.value(u"typeDisp"));
        if (type.isEmpty()) {
            type = shortText(quote.value(u"quoteType"));
        }
        QString exchange = shortText(quote.value(u"exchDisp"));
        if (exchange.isEmpty()) {
            exchange = shortText(quote.value(u"exchange"));
        }
        found.append({symbol, joined(symbol, name), joined(type, exchange)});
        if (found.size() == mostShown) {
            break;
        }
    }
    return found;
}

QList<QuoteSuggestion> QuoteSuggestion::coinsMatching(const QString& text) {
    const QString wanted = text.trimmed();
    if (wanted.isEmpty()) {
        return {};
    }
    QList<QuoteSuggestion> byTicker;
    QList<QuoteSuggestion> byName;
    for (const CryptoCoin& coin : CryptoCoin::all()) {
        const QuoteSuggestion suggestion{coin.id, joined(coin.symbol.toUpper(), coin.name), {}};
        if (coin.symbol.startsWith(wanted, Qt::CaseInsensitive)) {
            byTicker.append(suggestion);
        } else if (coin.id.startsWith(wanted, Qt::CaseInsensitive) ||
                   coin.name.startsWith(wanted, Qt::CaseInsensitive)) {
            byName.append(suggestion);
        }
    }
    byTicker.append(byName);
    return byTicker.mid(0, mostShown);
}

} // namespace tw
