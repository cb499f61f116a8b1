// The shared store of coin prices: the latest quote per coin and currency, the keys out of reach,
// and one request for all the coins of one currency that are due.
#pragma once

#include "market/FetchGate.h"
#include "market/MarketBoard.h"
#include "market/MarketFetch.h"

#include <QObject>
#include <QStringList>

#include <chrono>

namespace tw {

class CryptoService final : public QObject {
    Q_OBJECT
public:
    static constexpr std::chrono::seconds freshFor{60};
    // The day the sparkline of a coin covers.
    static constexpr std::chrono::hours seriesSpan{24};

    explicit CryptoService(const MarketFetch& fetch, QObject* parent = nullptr);

    const CryptoBoard& board() const { return m_board; }
    bool isInFlight(const QString& id, const QString& currency) const;
    QString failure(const QString& id, const QString& currency) const;

    // Fetches, in one request, those of `ids` in `currency` that are not blank, in flight, held
    // off, or (without `force`) fetched less than `freshFor` ago.
    void refreshIfStale(const QStringList& ids, const QString& currency, const QDateTime& now,
                        bool force = false);

Q_SIGNALS:
    void boardChanged();
    // The fetch of these keys ended, however it went.
    void settled(const QStringList& keys);

private:
    void take(const QStringList& ids, const QString& currency, const HttpResponse& response);

    MarketFetch m_fetch;
    FetchGate m_gate{freshFor};
    CryptoBoard m_board;
    QHash<QString, QString> m_failures;
};

} // namespace tw
