#include "lockscreen/LockScreenController.h"

#include "lockscreen/LockScreenLayout.h"
#include "lockscreen/LockScreenPolicy.h"

#include <QLoggingCategory>

namespace tw {

namespace {
Q_LOGGING_CATEGORY(lcLockScreen, "LockScreen")
} // namespace

LockScreenController::LockScreenController(LockScreenSurface& surface, const Clock& clock,
                                           Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_surface(surface)
    , m_clock(clock)
    , m_scheduler(scheduler) {}

LockScreenController::~LockScreenController() {
    stop();
}

void LockScreenController::start(const AppSettings& settings, WidgetSource widgets) {
    stop();
    m_settings = &settings;
    m_widgets = std::move(widgets);
    if (const std::optional<QString> why = m_surface.unavailableReason()) {
        qCInfo(lcLockScreen).noquote() << "lock screen surface unavailable on this system:" << *why;
    }
    qCInfo(lcLockScreen, "watching for lock (elevator installed: %d)", m_surface.canElevate());
    m_observers = {
        connect(&m_surface, &LockScreenSurface::screenLocked, this,
                &LockScreenController::screenLocked),
        connect(&m_surface, &LockScreenSurface::screenUnlocked, this,
                [this] { teardownIfReallyUnlocked(QStringLiteral("unlocked")); }),
        connect(&m_surface, &LockScreenSurface::willSleep, this,
                [this] { teardownIfReallyUnlocked(QStringLiteral("sleep")); }),
        connect(&m_surface, &LockScreenSurface::sessionResigned, this,
                [this] { teardownIfReallyUnlocked(QStringLiteral("session switch")); }),
    };
}

void LockScreenController::stop() {
    teardown(QStringLiteral("stopped"));
    for (const QMetaObject::Connection& observer : std::as_const(m_observers)) {
        disconnect(observer);
    }
    m_observers.clear();
}

std::optional<QString> LockScreenController::refusal() const {
    if (m_settings && !m_settings->lockScreenEnabled()) {
        return QStringLiteral("switched off in settings");
    }
    if (!m_surface.canElevate()) {
        return QStringLiteral("no elevator installed");
    }
    if (!m_surface.isScreenLocked()) {
        return QStringLiteral("session does not report the screen as locked");
    }
    return std::nullopt;
}

QList<WidgetInstance> LockScreenController::eligible(const QList<WidgetInstance>& widgets) {
    QList<WidgetInstance> shown;
    for (const WidgetInstance& widget : widgets) {
        if (LockScreenLayout::hasPosition(widget) && LockScreenPolicy::shows(widget)) {
            shown.append(widget);
        }
    }
    return shown;
}

void LockScreenController::screenLocked() {
    qCInfo(lcLockScreen, "screen locked");
    if (const std::optional<QString> why = refusal()) {
        qCInfo(lcLockScreen).noquote() << "lock surface skipped:" << *why;
        return;
    }
    present();
}

void LockScreenController::present() {
    if (m_showing) {
        teardown(QStringLiteral("re-presenting"));
    }
    if (!m_settings || !m_widgets) {
        qCInfo(lcLockScreen, "lock surface skipped: stores missing");
        return;
    }
    const QList<WidgetInstance> all = m_widgets();
    qsizetype allowed = 0;
    for (const WidgetInstance& widget : all) {
        allowed += LockScreenPolicy::shows(widget) ? 1 : 0;
    }
    const QList<WidgetInstance> shown = eligible(all);
    if (shown.isEmpty()) {
        qCInfo(lcLockScreen,
               "lock surface skipped: no widget has a lock-screen position (%lld placed, %lld "
               "allowed to show)",
               static_cast<long long>(all.size()), static_cast<long long>(allowed));
        return;
    }
    const double fps = m_settings->lockScreenFPS();
    const int windows = m_surface.open(fps);
    if (!m_surface.canElevate() || !m_surface.elevate()) {
        // Nothing may stay on the desktop from a surface that could not rise.
        m_surface.close();
        qCInfo(lcLockScreen, "lock surface not shown: could not raise the windows");
        return;
    }
    m_suspended = false;
    m_shownAt = m_clock.uptime();
    setShowing(true);
    startWatchdog();
    qCInfo(lcLockScreen, "lock surface shown: %lld widgets on %d display(s), at %f fps",
           static_cast<long long>(shown.size()), windows, fps);
}

void LockScreenController::startWatchdog() {
    m_watchdog.cancel();
    m_unlockedStreak = 0;
    m_lastReading.reset();
    m_watchdog =
        m_scheduler.repeating(watchdogInterval, watchdogTolerance, this, [this] { tick(); });
}

void LockScreenController::tick() {
    const bool locked = m_surface.isScreenLocked();
    if (m_lastReading != locked) {
        qCInfo(lcLockScreen, "session reports %s", locked ? "locked" : "unlocked");
        m_lastReading = locked;
    }
    if (locked) {
        m_unlockedStreak = 0;
        resume();
    } else {
        ++m_unlockedStreak;
        if (m_unlockedStreak == 1) {
            suspend();
        }
        if (m_unlockedStreak >= unlockedReadingsToRemove) {
            teardown(QStringLiteral("unlocked for %1 readings").arg(m_unlockedStreak));
            return;
        }
    }
    if (m_shownAt && m_clock.uptime() - *m_shownAt > uptimeCeiling) {
        teardown(QStringLiteral("uptime ceiling"));
    }
}

void LockScreenController::suspend() {
    if (m_showing && !m_suspended) {
        m_surface.setSuspended(true);
        m_suspended = true;
    }
}

void LockScreenController::resume() {
    if (m_showing && m_suspended) {
        m_surface.setSuspended(false);
        m_suspended = false;
    }
}

void LockScreenController::teardownIfReallyUnlocked(const QString& reason) {
    if (!m_showing) {
        return;
    }
    if (m_surface.isScreenLocked()) {
        qCInfo(lcLockScreen).noquote()
            << "ignored" << reason + QStringLiteral(": the screen is still locked");
        return;
    }
    suspend();
    ++m_unlockedStreak;
    if (m_unlockedStreak >= unlockedReadingsToRemove) {
        teardown(reason);
        return;
    }
    qCInfo(lcLockScreen).noquote() << QStringLiteral("deferred %1: %2 of %3 readings")
                                          .arg(reason)
                                          .arg(m_unlockedStreak)
                                          .arg(unlockedReadingsToRemove);
}

void LockScreenController::teardown(const QString& reason) {
    if (!m_showing && !m_watchdog.isActive()) {
        return;
    }
    m_watchdog.cancel();
    m_shownAt.reset();
    m_surface.close();
    setShowing(false);
    m_suspended = false;
    m_unlockedStreak = 0;
    m_lastReading.reset();
    qCInfo(lcLockScreen).noquote() << QStringLiteral("lock surface removed (%1)").arg(reason);
}

void LockScreenController::setShowing(bool showing) {
    if (m_showing != showing) {
        m_showing = showing;
        Q_EMIT isShowingChanged(showing);
    }
}

} // namespace tw
