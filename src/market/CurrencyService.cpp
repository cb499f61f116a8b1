#include "market/CurrencyService.h"

#include "market/MarketLog.h"
#include "net/HttpClient.h"
#include "platform/Clock.h"

#include <QUrlQuery>

namespace tw {

CurrencyService::CurrencyService(const MarketFetch& fetch, QObject* parent)
    : QObject(parent)
    , m_fetch(fetch) {}

bool CurrencyService::isInFlight(const QString& base) const {
    return m_gate.isInFlight(currencyCode(base));
}

QString CurrencyService::failure(const QString& base) const {
    return m_failures.value(currencyCode(base));
}

void CurrencyService::refreshIfStale(const QString& base, const QStringList& symbols,
                                     const QDateTime& now, bool force) {
    const QString key = currencyCode(base);
    if (key.isEmpty()) {
        return;
    }
    QStringList wanted;
    for (const QString& symbol : symbols) {
        const QString code = currencyCode(symbol);
        if (!code.isEmpty() && code != key && !wanted.contains(code)) {
            wanted.append(code);
        }
    }
    const auto kept = m_board.latest.constFind(key);
    bool missing = kept == m_board.latest.cend();
    if (kept != m_board.latest.cend()) {
        for (const QString& code : wanted) {
            missing = missing || !kept->rates.contains(code);
        }
        for (auto it = kept->rates.keyBegin(); it != kept->rates.keyEnd(); ++it) {
            if (!wanted.contains(*it)) {
                wanted.append(*it);
            }
        }
    }
    if (wanted.size() > CurrencyRates::maxRates) {
        wanted.resize(CurrencyRates::maxRates);
    }
    // Fresh rates that lack a currency a tile now asks for are fetched again, though not more
    // often than a tile refreshes.
    const QDateTime last = m_gate.lastFetch(key);
    const bool askedLately =
        last.isValid() && last <= now && last.secsTo(now) < missingAfter.count();
    const bool due = force || !m_gate.isFresh(key, now) || (missing && !askedLately);
    if (!due || !m_gate.begin(key, now, true)) {
        return;
    }
    HttpRequest request;
    request.url = m_fetch.endpoints.url(Endpoints::Service::Currency, QStringLiteral("/v1/latest"));
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("base"), key);
    if (!wanted.isEmpty()) {
        query.addQueryItem(QStringLiteral("symbols"), wanted.join(QLatin1Char(',')));
    }
    request.url.setQuery(query);
    request.timeout = MarketFetch::timeout;
    request.maxBytes = MarketFetch::maxBytes;
    m_fetch.http.get(request, this,
                     [this, key](const HttpResponse& response) { take(key, response); });
}

void CurrencyService::take(const QString& base, const HttpResponse& response) {
    const QDateTime now = m_fetch.clock.now();
    m_gate.end(base);
    std::optional<CurrencyRates> rates;
    QString why;
    if (response.error != HttpError::None) {
        why = response.message;
        qCInfo(lcMarket, "currency: %s", qUtf8Printable(why));
    } else if (response.status != 200) {
        why = QStringLiteral("HTTP %1").arg(response.status);
        qCInfo(lcMarket, "currency: HTTP %d", response.status);
        if (response.status == 429) {
            m_gate.holdOff(base, response, now);
        }
    } else {
        rates = CurrencyParser::parse(response.body, base, now);
        if (!rates) {
            why = QStringLiteral("an answer for another base or no rates");
            qCInfo(lcMarket, "currency: %s", qUtf8Printable(why));
        }
    }
    if (rates) {
        qCInfo(lcMarket, "currency: %lld rate(s) for %s", qlonglong(rates->rates.size()),
               qUtf8Printable(base));
        m_board.latest.insert(base, *rates);
        m_board.failed.remove(base);
        m_failures.remove(base);
    } else {
        m_board.failed.insert(base);
        m_failures.insert(base, why);
    }
    Q_EMIT boardChanged();
    Q_EMIT settled(base);
}

} // namespace tw
