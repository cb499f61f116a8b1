#include "market/MarketSettings.h"

#include "market/CurrencyRates.h"
#include "market/StockQuote.h"

namespace tw {

namespace {

QString value(const WidgetSettings& settings, const char* key) {
    return settings.value(QLatin1String(key)).trimmed();
}

void addUnique(QStringList& list, const QStringList& more) {
    for (const QString& item : more) {
        if (!list.contains(item)) {
            list.append(item);
        }
    }
}

} // namespace

QString MarketSettings::stockSymbol(const WidgetSettings& settings) {
    const QString symbol = normalizedSymbol(value(settings, "symbol"));
    return symbol.isEmpty() ? QStringLiteral("AAPL") : symbol;
}

CryptoCoin MarketSettings::coin(const WidgetSettings& settings) {
    const QString given = value(settings, "coin");
    if (given.isEmpty()) {
        return CryptoCoin::all().first();
    }
    if (const std::optional<CryptoCoin> known = CryptoCoin::coin(given)) {
        return *known;
    }
    return {given.toLower(), given.toUpper().left(6), given};
}

QString MarketSettings::coinCurrency(const WidgetSettings& settings) {
    const QString currency = value(settings, "vs").toLower();
    return currency.isEmpty() ? QStringLiteral("usd") : currency;
}

QList<CryptoCoin> MarketSettings::coinRows(const WidgetSettings& settings, qsizetype count) {
    QList<CryptoCoin> rows{coin(settings)};
    for (const CryptoCoin& other : CryptoCoin::all()) {
        if (rows.size() >= count) {
            break;
        }
        if (other.id != rows.first().id) {
            rows.append(other);
        }
    }
    return rows;
}

QString MarketSettings::currencyBase(const WidgetSettings& settings) {
    const QString base = currencyCode(value(settings, "base"));
    return base.isEmpty() ? QStringLiteral("EUR") : base;
}

QStringList MarketSettings::currencyTargets(const WidgetSettings& settings) {
    const QString base = currencyBase(settings);
    QStringList targets;
    for (const QString& part : value(settings, "to").split(QLatin1Char(','))) {
        const QString code = currencyCode(part);
        if (!code.isEmpty() && code != base && !targets.contains(code)) {
            targets.append(code);
        }
    }
    if (targets.isEmpty()) {
        for (const char* code : {"USD", "GBP", "CHF", "JPY"}) {
            if (QLatin1String(code) != base) {
                targets.append(QLatin1String(code));
            }
        }
    }
    return targets;
}

MarketDemand MarketDemand::of(const QString& kind, const WidgetSettings& settings) {
    MarketDemand demand;
    if (kind == QLatin1String("stocks")) {
        demand.stocks.append(MarketSettings::stockSymbol(settings));
    } else if (kind == QLatin1String("crypto")) {
        QStringList ids;
        for (const CryptoCoin& coin :
             MarketSettings::coinRows(settings, MarketSettings::coinRowsShown)) {
            ids.append(coin.id);
        }
        demand.coins.insert(MarketSettings::coinCurrency(settings), ids);
    } else if (kind == QLatin1String("currency")) {
        demand.rates.insert(MarketSettings::currencyBase(settings),
                            MarketSettings::currencyTargets(settings));
    } else if (kind == QLatin1String("unitconverter") &&
               settings.value(QStringLiteral("category")) == QLatin1String("currency")) {
        // The converter asks for the rates of what it converts from, into what it converts to.
        const QString from = currencyCode(settings.value(QStringLiteral("from")));
        const QString to = currencyCode(settings.value(QStringLiteral("to")));
        if (!from.isEmpty() && !to.isEmpty() && from != to) {
            demand.rates.insert(from, {to});
        }
    }
    return demand;
}

void MarketDemand::add(const MarketDemand& other) {
    addUnique(stocks, other.stocks);
    for (auto it = other.coins.cbegin(); it != other.coins.cend(); ++it) {
        addUnique(coins[it.key()], it.value());
    }
    for (auto it = other.rates.cbegin(); it != other.rates.cend(); ++it) {
        addUnique(rates[it.key()], it.value());
    }
}

} // namespace tw
