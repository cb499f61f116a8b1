#include "market/CurrencyRates.h"

#include "market/JsonNumbers.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace tw {

std::optional<CurrencyRates> CurrencyParser::parse(const QByteArray& data, const QString& expecting,
                                                   const QDateTime& now) {
    const QJsonObject root = QJsonDocument::fromJson(data).object();
    const QString base = currencyCode(root.value(QLatin1String("base")).toString());
    if (base.isEmpty() || base != currencyCode(expecting) ||
        !root.value(QLatin1String("rates")).isObject()) {
        return std::nullopt;
    }
    CurrencyRates rates;
    rates.base = base;
    const QJsonObject table = root.value(QLatin1String("rates")).toObject();
    for (auto it = table.begin(); it != table.end() && rates.rates.size() < CurrencyRates::maxRates;
         ++it) {
        const QString code = currencyCode(it.key());
        const std::optional<double> rate = positiveNumber(it.value());
        if (!code.isEmpty() && rate) {
            rates.rates.insert(code, *rate);
        }
    }
    rates.day = QDate::fromString(root.value(QLatin1String("date")).toString(), Qt::ISODate);
    rates.fetched = now;
    return rates;
}

QString currencyCode(const QString& text) {
    const QString code = text.trimmed().toUpper();
    if (code.size() != 3) {
        return {};
    }
    for (const QChar c : code) {
        if (c < QLatin1Char('A') || c > QLatin1Char('Z')) {
            return {};
        }
    }
    return code;
}

} // namespace tw
