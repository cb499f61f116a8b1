#include "market/StockQuote.h"

#include "market/JsonNumbers.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace tw {

std::optional<double> StockQuote::percent() const {
    if (previousClose <= 0) {
        return std::nullopt;
    }
    return change() / previousClose * 100.0;
}

std::optional<StockQuote> StockQuote::fromChart(const QByteArray& answer, const QString& symbol,
                                                const QDateTime& now) {
    const QJsonObject result = QJsonDocument::fromJson(answer)
                                   .object()
                                   .value(QLatin1String("chart"))
                                   .toObject()
                                   .value(QLatin1String("result"))
                                   .toArray()
                                   .at(0)
                                   .toObject();
    const QJsonObject meta = result.value(QLatin1String("meta")).toObject();
    const std::optional<double> price =
        positiveNumber(meta.value(QLatin1String("regularMarketPrice")));
    if (!price) {
        return std::nullopt;
    }
    StockQuote quote;
    quote.symbol = normalizedSymbol(symbol);
    quote.price = *price;
    quote.previousClose =
        positiveNumber(meta.value(QLatin1String("chartPreviousClose")))
            .value_or(positiveNumber(meta.value(QLatin1String("previousClose"))).value_or(0));
    quote.currency = shortText(meta.value(QLatin1String("currency")));
    quote.name = shortText(meta.value(QLatin1String("shortName")));
    if (quote.name.isEmpty()) {
        quote.name = shortText(meta.value(QLatin1String("longName")));
    }
    if (quote.name.isEmpty()) {
        quote.name = quote.symbol;
    }
    const QJsonArray closes = result.value(QLatin1String("indicators"))
                                  .toObject()
                                  .value(QLatin1String("quote"))
                                  .toArray()
                                  .at(0)
                                  .toObject()
                                  .value(QLatin1String("close"))
                                  .toArray();
    for (const QJsonValue& close : closes) {
        if (quote.series.size() == maxSeries) {
            break;
        }
        if (const std::optional<double> value = positiveNumber(close)) {
            quote.series.append(*value);
        }
    }
    quote.updated = now;
    return quote;
}

QString normalizedSymbol(const QString& symbol) {
    return symbol.trimmed().toUpper();
}

} // namespace tw
