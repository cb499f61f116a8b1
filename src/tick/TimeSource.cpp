#include "tick/TimeSource.h"

#include "tick/MinuteCoordinator.h"
#include "tick/TickCoordinator.h"

namespace tw {

TimeSource::TimeSource(TimeGrain grain, TickCoordinator& ticker, MinuteCoordinator& minutes,
                       QObject* parent)
    : QObject(parent)
    , m_grain(grain)
    , m_ticker(ticker)
    , m_minutes(minutes)
    , m_seeded(ticker.currentTime()) {
    m_shown = time();
    // Only one of the two is connected: a minutes view must not be called on every tick.
    switch (m_grain) {
    case TimeGrain::Seconds:
        connect(&m_ticker, &TickCoordinator::nowChanged, this, &TimeSource::emitIfChanged);
        break;
    case TimeGrain::Minutes:
        connect(&m_minutes, &MinuteCoordinator::nowChanged, this, &TimeSource::emitIfChanged);
        break;
    }
}

QDateTime TimeSource::time() const {
    switch (m_grain) {
    case TimeGrain::Seconds:
        return m_ticker.now();
    case TimeGrain::Minutes:
        break;
    }
    const QDateTime minute = m_minutes.now();
    return minute > m_seeded ? minute : m_seeded;
}

void TimeSource::reseed() {
    m_seeded = m_ticker.currentTime();
    emitIfChanged();
}

void TimeSource::emitIfChanged() {
    const QDateTime current = time();
    if (current != m_shown) {
        m_shown = current;
        Q_EMIT timeChanged(current);
    }
}

} // namespace tw
