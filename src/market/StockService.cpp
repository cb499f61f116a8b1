#include "market/StockService.h"

#include "market/MarketLog.h"
#include "net/HttpClient.h"
#include "platform/Clock.h"

namespace tw {

StockService::StockService(const MarketFetch& fetch, QObject* parent)
    : QObject(parent)
    , m_fetch(fetch) {}

std::optional<StockQuote> StockService::quote(const QString& symbol) const {
    const auto it = m_board.quotes.constFind(normalizedSymbol(symbol));
    if (it == m_board.quotes.cend()) {
        return std::nullopt;
    }
    return *it;
}

bool StockService::isUnknown(const QString& symbol) const {
    return m_board.unknown.contains(normalizedSymbol(symbol));
}

bool StockService::isUnreachable(const QString& symbol) const {
    return m_board.unreachable.contains(normalizedSymbol(symbol));
}

bool StockService::isInFlight(const QString& symbol) const {
    return m_gate.isInFlight(normalizedSymbol(symbol));
}

QString StockService::failure(const QString& symbol) const {
    return m_failures.value(normalizedSymbol(symbol));
}

void StockService::refreshIfStale(const QString& symbol, const QDateTime& now, bool force) {
    const QString key = normalizedSymbol(symbol);
    if (key.isEmpty() || !m_gate.begin(key, now, force)) {
        return;
    }
    HttpRequest request;
    request.url = m_fetch.endpoints.url(Endpoints::Service::Stocks,
                                        QLatin1String("/v8/finance/chart/") +
                                            QString::fromLatin1(QUrl::toPercentEncoding(key)));
    request.url.setQuery(QStringLiteral("range=1d&interval=15m"));
    request.headers = {{"User-Agent", userAgent}};
    request.timeout = MarketFetch::timeout;
    request.maxBytes = MarketFetch::maxBytes;
    m_fetch.http.get(request, this,
                     [this, key](const HttpResponse& response) { take(key, response); });
}

void StockService::search(const QString& text, const QObject* requester, Found done) {
    const QString wanted = text.simplified();
    if (wanted.isEmpty()) {
        done({}, {});
        return;
    }
    HttpRequest request;
    request.url =
        m_fetch.endpoints.url(Endpoints::Service::Stocks, QStringLiteral("/v1/finance/search"));
    // Encoded by hand: a "+" or "&" in what was typed must reach the service as typed.
    const QByteArray query = "q=" + QUrl::toPercentEncoding(wanted) +
                             "&quotesCount=" + QByteArray::number(QuoteSuggestion::mostShown) +
                             "&newsCount=0";
    request.url.setQuery(QString::fromLatin1(query), QUrl::StrictMode);
    request.headers = {{"User-Agent", userAgent}};
    request.timeout = MarketFetch::timeout;
    request.maxBytes = searchMaxBytes;
    m_fetch.http.get(request, requester, [done = std::move(done)](const HttpResponse& response) {
        if (!response.isSuccess()) {
            const QString why = response.error != HttpError::None
                                    ? response.message
                                    : QStringLiteral("HTTP %1").arg(response.status);
            qCInfo(lcMarket, "stock search failed: %s", qUtf8Printable(why));
            done({}, why);
            return;
        }
        done(QuoteSuggestion::fromStockSearch(response.body), {});
    });
}

void StockService::take(const QString& symbol, const HttpResponse& response) {
    const QDateTime now = m_fetch.clock.now();
    m_gate.end(symbol);
    std::optional<StockQuote> quote;
    if (response.isSuccess()) {
        quote = StockQuote::fromChart(response.body, symbol, now);
    }
    // A broken answer for a symbol that had a price is the service's fault, not the symbol's.
    const bool answered = response.error == HttpError::None;
    const bool unknown = answered && (response.status == 404 ||
                                      (response.status == 200 && !m_board.quotes.contains(symbol)));
    if (quote) {
        qCInfo(lcMarket, "stocks: %s at %f", qUtf8Printable(symbol), quote->price);
        m_board.quotes.insert(symbol, *quote);
        m_board.unknown.remove(symbol);
        m_board.unreachable.remove(symbol);
        m_failures.remove(symbol);
    } else if (unknown) {
        qCInfo(lcMarket, "stocks: %s is not a known symbol", qUtf8Printable(symbol));
        m_board.unknown.insert(symbol);
        m_board.unreachable.remove(symbol);
        m_failures.remove(symbol);
    } else {
        const QString why = response.error != HttpError::None
                                ? response.message
                                : QStringLiteral("HTTP %1").arg(response.status);
        qCInfo(lcMarket, "stock fetch failed: %s", qUtf8Printable(why));
        if (response.status == 429) {
            m_gate.holdOff(symbol, response, now);
        }
        m_board.unreachable.insert(symbol);
        m_failures.insert(symbol, why);
    }
    Q_EMIT boardChanged();
    Q_EMIT settled(symbol);
}

} // namespace tw
