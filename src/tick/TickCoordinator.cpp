#include "tick/TickCoordinator.h"

#include "platform/Clock.h"
#include "platform/Scheduler.h"

#include <QLoggingCategory>
#include <QThread>

namespace tw {

Q_LOGGING_CATEGORY(lcTicker, "TickCoordinator")

TickCoordinator::TickCoordinator(Scheduler& scheduler, const Clock& systemClock,
                                 const Clock& currentClock, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_systemClock(systemClock)
    , m_currentClock(currentClock)
    , m_now(currentClock.now()) {}

TickCoordinator::~TickCoordinator() = default;

QDateTime TickCoordinator::currentTime() const {
    return m_currentClock.now();
}

void TickCoordinator::setActive(bool desktopActive) {
    if (desktopActive == m_desktopActive) {
        return;
    }
    m_desktopActive = desktopActive;
    reconcile();
}

void TickCoordinator::setPreviewActive(bool previewActive) {
    if (previewActive == m_previewActive) {
        return;
    }
    m_previewActive = previewActive;
    reconcile();
}

void TickCoordinator::setInterval(Interval interval) {
    if (interval <= Interval::zero()) {
        qCWarning(lcTicker) << "Ignoring a tick interval of" << interval.count() << "ms";
        return;
    }
    if (interval == m_interval) {
        return;
    }
    m_interval = interval;
    if (m_isActive) {
        stop();
        start();
    }
}

void TickCoordinator::reconcile() {
    const bool active = m_desktopActive || m_previewActive;
    if (active == m_isActive) {
        return;
    }
    m_isActive = active;
    if (active) {
        start();
    } else {
        stop();
    }
    const auto word = [](bool value) { return value ? "true" : "false"; };
    qCDebug(lcTicker, "Ticker active=%s (desktop=%s preview=%s) interval=%f", word(m_isActive),
            word(m_desktopActive), word(m_previewActive),
            std::chrono::duration<double>(m_interval).count());
    Q_EMIT activeChanged(m_isActive);
}

void TickCoordinator::start() {
    // A view that appears this instant must not show the time of the last run.
    const QDateTime current = m_currentClock.now();
    if (current != m_now) {
        m_now = current;
        Q_EMIT nowChanged(m_now);
    }
    m_cadence.seed(current);
    // No alignment to second boundaries and no drift correction: the phase is wherever we start.
    m_timer = m_scheduler.repeating(m_interval, m_interval / 5, this, [this] { tick(); });
}

void TickCoordinator::stop() {
    m_timer.cancel();
}

void TickCoordinator::tick() {
    Q_ASSERT_X(QThread::currentThread() == thread(), "TickCoordinator::tick",
               "ticks run on the coordinator's thread");
    // Ticks always stamp the real time, even with a pinned clock.
    m_now = m_systemClock.now();
    Q_EMIT nowChanged(m_now);
    m_cadence.advance(m_now);
}

} // namespace tw
