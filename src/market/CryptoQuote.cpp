#include "market/CryptoQuote.h"

#include "market/JsonNumbers.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace tw {

QHash<QString, CryptoQuote> CryptoQuote::fromSimplePrice(const QByteArray& answer,
                                                         const QStringList& ids,
                                                         const QString& currency,
                                                         const QDateTime& now) {
    const QJsonObject root = QJsonDocument::fromJson(answer).object();
    const QString code = currency.trimmed().toLower();
    const QString changeKey = code + QLatin1String("_24h_change");
    QHash<QString, CryptoQuote> quotes;
    for (const QString& id : ids) {
        if (quotes.size() == maxCoins) {
            break;
        }
        const QJsonObject entry = root.value(id).toObject();
        const std::optional<double> price = positiveNumber(entry.value(code));
        if (!price) {
            continue;
        }
        quotes.insert(id, CryptoQuote{.price = *price,
                                      .change24h = finiteNumber(entry.value(changeKey)),
                                      .currency = code,
                                      .updated = now,
                                      .series = {}});
    }
    return quotes;
}

QString CryptoQuote::key(const QString& id, const QString& currency) {
    return id.trimmed().toLower() + QLatin1Char('/') + currency.trimmed().toLower();
}

} // namespace tw
