// The shared store of share prices: the latest quote per symbol, the symbols known to be bad or
// out of reach, and one request per symbol however many tiles show it.
#pragma once

#include "market/FetchGate.h"
#include "market/MarketBoard.h"
#include "market/MarketFetch.h"
#include "market/QuoteSuggestion.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <optional>

namespace tw {

class StockService final : public QObject {
    Q_OBJECT
public:
    static constexpr std::chrono::seconds freshFor{60};
    // The chart service turns away clients that do not look like a browser.
    static constexpr char userAgent[] = "Mozilla/5.0 (X11; Linux x86_64)";
    // A search answers with a handful of matches and some news; far less than this.
    static constexpr qint64 searchMaxBytes = 256 * 1024;

    explicit StockService(const MarketFetch& fetch, QObject* parent = nullptr);

    const StockBoard& board() const { return m_board; }
    std::optional<StockQuote> quote(const QString& symbol) const;
    bool isUnknown(const QString& symbol) const;
    bool isUnreachable(const QString& symbol) const;
    bool isInFlight(const QString& symbol) const;
    // The words of the last failure of a symbol out of reach; empty otherwise.
    QString failure(const QString& symbol) const;

    // Fetches the symbol unless it is blank, in flight, held off by the service, or (without
    // `force`) fetched less than `freshFor` ago.
    void refreshIfStale(const QString& symbol, const QDateTime& now, bool force = false);

    // The matches or, when the service could not be asked, why (the person's words).
    using Found =
        std::function<void(const QList<QuoteSuggestion>& matches, const QString& failure)>;
    // Asks the service's symbol search for what `text` may mean; `done` runs once, unless
    // `requester` goes first.
    void search(const QString& text, const QObject* requester, Found done);

Q_SIGNALS:
    void boardChanged();
    // The fetch of a symbol ended, however it went.
    void settled(const QString& symbol);

private:
    void take(const QString& symbol, const HttpResponse& response);

    MarketFetch m_fetch;
    FetchGate m_gate{freshFor};
    StockBoard m_board;
    QHash<QString, QString> m_failures;
};

} // namespace tw
