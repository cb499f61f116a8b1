#include "market/CryptoService.h"

#include "market/MarketLog.h"
#include "net/HttpClient.h"
#include "platform/Clock.h"

#include <QUrlQuery>

namespace tw {

CryptoService::CryptoService(const MarketFetch& fetch, QObject* parent)
    : QObject(parent)
    , m_fetch(fetch) {}

bool CryptoService::isInFlight(const QString& id, const QString& currency) const {
    return m_gate.isInFlight(CryptoQuote::key(id, currency));
}

QString CryptoService::failure(const QString& id, const QString& currency) const {
    return m_failures.value(CryptoQuote::key(id, currency));
}

void CryptoService::refreshIfStale(const QStringList& ids, const QString& currency,
                                   const QDateTime& now, bool force) {
    const QString code = currency.trimmed().toLower();
    if (code.isEmpty()) {
        return;
    }
    QStringList due;
    for (const QString& given : ids) {
        const QString id = given.trimmed().toLower();
        if (!id.isEmpty() && !due.contains(id) && due.size() < CryptoQuote::maxCoins &&
            m_gate.begin(CryptoQuote::key(id, code), now, force)) {
            due.append(id);
        }
    }
    if (due.isEmpty()) {
        return;
    }
    HttpRequest request;
    request.url =
        m_fetch.endpoints.url(Endpoints::Service::Crypto, QStringLiteral("/api/v3/simple/price"));
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("ids"), due.join(QLatin1Char(',')));
    query.addQueryItem(QStringLiteral("vs_currencies"), code);
    query.addQueryItem(QStringLiteral("include_24hr_change"), QStringLiteral("true"));
    request.url.setQuery(query);
    request.timeout = MarketFetch::timeout;
    request.maxBytes = MarketFetch::maxBytes;
    m_fetch.http.get(request, this, [this, due, code](const HttpResponse& response) {
        take(due, code, response);
    });
}

void CryptoService::take(const QStringList& ids, const QString& currency,
                         const HttpResponse& response) {
    const QDateTime now = m_fetch.clock.now();
    QStringList keys;
    for (const QString& id : ids) {
        keys.append(CryptoQuote::key(id, currency));
        m_gate.end(keys.last());
    }
    if (!response.isSuccess()) {
        const QString why = response.error != HttpError::None
                                ? response.message
                                : QStringLiteral("HTTP %1").arg(response.status);
        qCInfo(lcMarket, "crypto fetch failed: %s", qUtf8Printable(why));
        for (const QString& key : keys) {
            if (response.status == 429) {
                m_gate.holdOff(key, response, now);
            }
            m_board.unreachable.insert(key);
            m_failures.insert(key, why);
        }
        Q_EMIT boardChanged();
        Q_EMIT settled(keys);
        return;
    }
    const QHash<QString, CryptoQuote> quotes =
        CryptoQuote::fromSimplePrice(response.body, ids, currency, now);
    const QDateTime since = now.addSecs(-std::chrono::seconds(seriesSpan).count());
    for (const QString& id : ids) {
        const QString key = CryptoQuote::key(id, currency);
        const auto found = quotes.constFind(id);
        if (found == quotes.cend()) {
            // Kept: a coin the answer leaves out keeps its last price, marked as unknown.
            m_board.unknown.insert(key);
            continue;
        }
        CryptoQuote quote = *found;
        const auto previous = m_board.quotes.constFind(key);
        if (previous != m_board.quotes.cend() && previous->updated >= since) {
            quote.series = previous->series;
        }
        quote.series.append(quote.price);
        if (quote.series.size() > CryptoQuote::maxSeries) {
            quote.series.remove(0, quote.series.size() - CryptoQuote::maxSeries);
        }
        m_board.quotes.insert(key, quote);
        m_board.unknown.remove(key);
        m_board.unreachable.remove(key);
        m_failures.remove(key);
    }
    Q_EMIT boardChanged();
    Q_EMIT settled(keys);
}

} // namespace tw
