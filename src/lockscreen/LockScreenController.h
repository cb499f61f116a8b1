// Decides when the surface above the lock screen rises, watches the session four times a second
// while it is up, and removes it only once the screen is surely unlocked.
#pragma once

#include "model/WidgetInstance.h"
#include "platform/Clock.h"
#include "platform/LockScreenSurface.h"
#include "platform/Scheduler.h"
#include "settings/AppSettings.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <chrono>
#include <functional>
#include <optional>

namespace tw {

class LockScreenController final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isShowing READ isShowing NOTIFY isShowingChanged)
public:
    using WidgetSource = std::function<QList<WidgetInstance>()>;

    static constexpr Scheduler::Duration watchdogInterval{250};
    static constexpr Scheduler::Duration watchdogTolerance{500};
    // Consecutive unlocked readings that remove the surface: about 1.5 s of them.
    static constexpr int unlockedReadingsToRemove = 6;
    static constexpr std::chrono::seconds uptimeCeiling{12 * 60 * 60};

    LockScreenController(LockScreenSurface& surface, const Clock& clock, Scheduler& scheduler,
                         QObject* parent = nullptr);
    ~LockScreenController() override;

    // Listens to the surface's session notices; `widgets` is asked each time the screen locks.
    void start(const AppSettings& settings, WidgetSource widgets);
    // Removes the surface and stops listening.
    void stop();
    void screenLocked();

    // Why the surface would not rise now, or nullopt.
    std::optional<QString> refusal() const;
    bool isShowing() const { return m_showing; }
    bool isSuspended() const { return m_suspended; }
    int unlockedStreak() const { return m_unlockedStreak; }

    // The widgets the surface shows: those with a lock-screen position that policy lets show.
    static QList<WidgetInstance> eligible(const QList<WidgetInstance>& widgets);

Q_SIGNALS:
    void isShowingChanged(bool showing);

private:
    void present();
    void startWatchdog();
    void tick();
    void suspend();
    void resume();
    void teardownIfReallyUnlocked(const QString& reason);
    void teardown(const QString& reason);
    void setShowing(bool showing);

    LockScreenSurface& m_surface;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    QPointer<const AppSettings> m_settings;
    WidgetSource m_widgets;
    QList<QMetaObject::Connection> m_observers;

    bool m_showing = false;
    bool m_suspended = false;
    ScheduledTask m_watchdog;
    int m_unlockedStreak = 0;
    std::optional<bool> m_lastReading;
    std::optional<std::chrono::nanoseconds> m_shownAt;
};

} // namespace tw
