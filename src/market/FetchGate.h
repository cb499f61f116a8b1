// The guards every quote store keeps per key: one request in flight at a time, none while the last
// answer is fresh, and none while the service has asked to be left alone.
#pragma once

#include "net/HttpResponse.h"

#include <QDateTime>
#include <QHash>
#include <QSet>
#include <QString>

#include <chrono>

namespace tw {

class FetchGate {
public:
    // Without a Retry-After of its own, a refusal keeps the key quiet this long.
    static constexpr std::chrono::seconds defaultHoldOff{120};
    // A Retry-After longer than this is taken as this.
    static constexpr std::chrono::seconds longestHoldOff{3600};

    explicit FetchGate(std::chrono::seconds freshFor)
        : m_freshFor(freshFor) {}

    // Whether a fetch of `key` may start at `now`: never while one is in flight or the service
    // holds it off; with `force`, whatever the age of the last one. When it may, the key is in
    // flight from here and its last fetch is `now`, so that a failing service is asked again
    // only once the key is stale.
    bool begin(const QString& key, const QDateTime& now, bool force);
    void end(const QString& key) { m_inFlight.remove(key); }
    // After a refusal (429): quiet until the time the answer names, or for `defaultHoldOff`.
    void holdOff(const QString& key, const HttpResponse& refusal, const QDateTime& now);

    bool isInFlight(const QString& key) const { return m_inFlight.contains(key); }
    bool isFresh(const QString& key, const QDateTime& now) const;
    QDateTime lastFetch(const QString& key) const { return m_lastFetch.value(key); }
    QDateTime heldUntil(const QString& key) const { return m_heldUntil.value(key); }

private:
    std::chrono::seconds m_freshFor;
    QHash<QString, QDateTime> m_lastFetch;
    QHash<QString, QDateTime> m_heldUntil;
    QSet<QString> m_inFlight;
};

// How long a refusal asks to wait: Retry-After in seconds or as an HTTP date, within one second
// and `FetchGate::longestHoldOff`; `FetchGate::defaultHoldOff` when it names nothing readable.
std::chrono::seconds retryAfter(const HttpResponse& refusal, const QDateTime& now);

} // namespace tw
