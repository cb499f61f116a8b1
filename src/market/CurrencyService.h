// The shared store of exchange rates: the central bank's latest reference rates per base, the
// bases out of reach, and one request per base however many tiles show it.
#pragma once

#include "market/FetchGate.h"
#include "market/MarketBoard.h"
#include "market/MarketFetch.h"

#include <QObject>
#include <QStringList>

#include <chrono>

namespace tw {

class CurrencyService final : public QObject {
    Q_OBJECT
public:
    // The rates change once a working day; an hour catches a new day soon enough.
    static constexpr std::chrono::seconds freshFor{3600};
    // A tile asking for a currency the kept rates lack waits no longer than this.
    static constexpr std::chrono::seconds missingAfter{60};

    explicit CurrencyService(const MarketFetch& fetch, QObject* parent = nullptr);

    const CurrencyBoard& board() const { return m_board; }
    bool isInFlight(const QString& base) const;
    QString failure(const QString& base) const;

    // Fetches the rates of `base` against `symbols` (and those already kept for it) unless the
    // base is no currency code, in flight, held off, or (without `force`) fresh with every
    // symbol asked for.
    void refreshIfStale(const QString& base, const QStringList& symbols, const QDateTime& now,
                        bool force = false);

Q_SIGNALS:
    void boardChanged();
    // The fetch of a base ended, however it went.
    void settled(const QString& base);

private:
    void take(const QString& base, const HttpResponse& response);

    MarketFetch m_fetch;
    FetchGate m_gate{freshFor};
    CurrencyBoard m_board;
    QHash<QString, QString> m_failures;
};

} // namespace tw
