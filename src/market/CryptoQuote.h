// One coin's price in one currency, as the simple-price service answers it.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tw {

struct CryptoQuote {
    // A day of the service's minutes.
    static constexpr qsizetype maxSeries = 1440;
    // Nobody asks for more at once; an answer naming more is cut here.
    static constexpr qsizetype maxCoins = 100;

    double price = 0;
    // In percent over the last day; nullopt when the answer has none.
    std::optional<double> change24h;
    // Lower-case, as asked for ("usd").
    QString currency;
    QDateTime updated;
    // The prices this program saw over the last day, oldest first: the service gives no chart.
    QList<double> series;

    bool operator==(const CryptoQuote&) const = default;

    // The quotes of an answer by coin id, only of those in `ids`; an id without a usable price
    // is missing. Lenient: a wrong-typed change is absent.
    static QHash<QString, CryptoQuote> fromSimplePrice(const QByteArray& answer,
                                                       const QStringList& ids,
                                                       const QString& currency,
                                                       const QDateTime& now);
    // The store's key of a coin in a currency: "bitcoin/usd".
    static QString key(const QString& id, const QString& currency);
};

} // namespace tw
