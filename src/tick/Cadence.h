// The coarser beats of the tick: every other second, each new minute and each new day.
#pragma once

#include <QDateTime>
#include <QObject>

#include <optional>

namespace tw {

// Fed only by the TickCoordinator that owns it; subscribers connect to its signals. The signals
// carry the tick's time and have no memory: a subscriber that connects between two events gets
// nothing until the next one.
class Cadence final : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Remembers the minute and the day of `date` without announcing them, so that the first tick
    // after a restart does not announce a "new" minute.
    void seed(const QDateTime& date);
    // Announces, in this order, an even second, a new minute and a new day.
    void advance(const QDateTime& date);

Q_SIGNALS:
    // On ticks whose whole seconds since 1970 are even. Not a strict period: two late ticks can
    // both land on odd seconds, and a two-second tick can stay on odd seconds for good.
    void twoSeconds(const QDateTime& date);
    void minutes(const QDateTime& date);
    void days(const QDateTime& date);

private:
    // Instants in milliseconds since 1970.
    std::optional<qint64> m_lastMinute;
    std::optional<qint64> m_lastDay;
    // The day's start as the time of day suggests; see advance().
    std::optional<qint64> m_dayEstimate;
};

} // namespace tw
