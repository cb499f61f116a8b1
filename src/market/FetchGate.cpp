#include "market/FetchGate.h"

#include <QLocale>
#include <QTimeZone>

#include <algorithm>

namespace tw {

bool FetchGate::begin(const QString& key, const QDateTime& now, bool force) {
    if (m_inFlight.contains(key)) {
        return false;
    }
    const QDateTime held = m_heldUntil.value(key);
    if (held.isValid() && now < held) {
        return false;
    }
    if (!force && isFresh(key, now)) {
        return false;
    }
    m_inFlight.insert(key);
    m_lastFetch.insert(key, now);
    return true;
}

bool FetchGate::isFresh(const QString& key, const QDateTime& now) const {
    const QDateTime last = m_lastFetch.value(key);
    // A clock turned back makes the last fetch lie ahead: stale, not fresh for ever.
    return last.isValid() && last <= now && last.secsTo(now) < m_freshFor.count();
}

void FetchGate::holdOff(const QString& key, const HttpResponse& refusal, const QDateTime& now) {
    m_heldUntil.insert(key, now.addSecs(retryAfter(refusal, now).count()));
}

std::chrono::seconds retryAfter(const HttpResponse& refusal, const QDateTime& now) {
    using std::chrono::seconds;
    const QString value = QString::fromLatin1(refusal.header("retry-after")).trimmed();
    std::optional<qint64> wait;
    bool number = false;
    const qint64 given = value.toLongLong(&number);
    if (number) {
        wait = given;
    } else if (!value.isEmpty()) {
        // "Wed, 21 Oct 2015 07:28:00 GMT"
        QDateTime at = QLocale::c().toDateTime(value.left(64),
                                               QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"));
        if (at.isValid()) {
            at.setTimeZone(QTimeZone::utc());
            wait = now.secsTo(at);
        }
    }
    if (!wait) {
        return FetchGate::defaultHoldOff;
    }
    return seconds(std::clamp<qint64>(*wait, 1, FetchGate::longestHoldOff.count()));
}

} // namespace tw
