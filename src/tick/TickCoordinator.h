// The one repeating timer of the tiles: runs only while a panel or a preview is on screen.
#pragma once

#include "platform/ScheduledTask.h"
#include "tick/Cadence.h"

#include <QDateTime>
#include <QObject>

#include <chrono>

namespace tw {

class Clock;
class Scheduler;

class TickCoordinator final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QDateTime now READ now NOTIFY nowChanged)
    Q_PROPERTY(bool isActive READ isActive NOTIFY activeChanged)
    Q_PROPERTY(bool desktopActive READ desktopActive WRITE setActive)
    Q_PROPERTY(bool previewActive READ previewActive WRITE setPreviewActive)
public:
    using Interval = std::chrono::milliseconds;
    static constexpr Interval defaultInterval{1000};

    // `systemClock` stamps every tick. `currentClock` gives the time at a start and for seeding
    // views; in the application it answers a pinned time when one is set. Both must outlive this.
    TickCoordinator(Scheduler& scheduler, const Clock& systemClock, const Clock& currentClock,
                    QObject* parent = nullptr);
    ~TickCoordinator() override;

    // The time of the last tick (or of the last start); stale while stopped.
    QDateTime now() const { return m_now; }
    // The current time as views should first show it: pinned if a pin is set.
    QDateTime currentTime() const;
    bool isActive() const { return m_isActive; }
    Interval interval() const { return m_interval; }
    bool desktopActive() const { return m_desktopActive; }
    bool previewActive() const { return m_previewActive; }

    // Whether at least one desktop panel is on screen.
    void setActive(bool desktopActive);
    // Whether the configuration window's previews are on screen.
    void setPreviewActive(bool previewActive);
    // A new interval restarts a running timer (new phase, Cadence re-seeded); while stopped it is
    // only stored. Non-positive intervals are refused.
    void setInterval(Interval interval);

    // The coarser beats derived from the tick.
    Cadence& cadence() { return m_cadence; }

Q_SIGNALS:
    void nowChanged(const QDateTime& now);
    void activeChanged(bool isActive);

private:
    void reconcile();
    void start();
    void stop();
    void tick();

    Scheduler& m_scheduler;
    const Clock& m_systemClock;
    const Clock& m_currentClock;
    Cadence m_cadence;
    QDateTime m_now;
    bool m_isActive = false;
    ScheduledTask m_timer;
    Interval m_interval = defaultInterval;
    bool m_desktopActive = false;
    bool m_previewActive = false;
};

} // namespace tw
