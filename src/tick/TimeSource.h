// A view's time at the grain it can live with; it wakes the view only when that grain moves.
#pragma once

#include "tick/TimeGrain.h"

#include <QDateTime>
#include <QObject>

namespace tw {

class MinuteCoordinator;
class TickCoordinator;

// At the seconds grain `time()` is the ticker's `now` and `timeChanged` comes with every tick. At
// the minutes grain `time()` is the later of the moment the view last appeared and the minute
// coordinator's `now`, and `timeChanged` comes once per new minute: a view that shows hours and
// minutes is never touched between minutes. The coordinators must outlive the source.
class TimeSource final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QDateTime time READ time NOTIFY timeChanged)
public:
    TimeSource(TimeGrain grain, TickCoordinator& ticker, MinuteCoordinator& minutes,
               QObject* parent = nullptr);

    TimeGrain grain() const { return m_grain; }
    QDateTime time() const;

    // Call when the view appears: after a long stop the minute coordinator still holds the minute
    // of the last tick, so the view starts from the current time instead.
    void reseed();

Q_SIGNALS:
    void timeChanged(const QDateTime& time);

private:
    void emitIfChanged();

    TimeGrain m_grain;
    TickCoordinator& m_ticker;
    MinuteCoordinator& m_minutes;
    QDateTime m_seeded;
    QDateTime m_shown;
};

} // namespace tw
