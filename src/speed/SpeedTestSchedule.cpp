#include "speed/SpeedTestSchedule.h"

#include "platform/Clock.h"
#include "platform/Scheduler.h"
#include "speed/SpeedTestService.h"

#include <algorithm>

namespace tw {

SpeedTestSchedule::SpeedTestSchedule(SpeedTestService& service, const Clock& clock,
                                     Scheduler& scheduler, QObject* parent)
    : TileBehaviour(parent)
    , m_service(service)
    , m_clock(clock)
    , m_scheduler(scheduler) {
    connect(&service, &SpeedTestService::boardChanged, this, &SpeedTestSchedule::follow);
}

std::chrono::seconds SpeedTestSchedule::everyOf(const WidgetSettings& settings) {
    bool ok = false;
    const qint64 seconds = settings.value(QStringLiteral("every")).toLongLong(&ok);
    if (!ok || seconds <= 0) {
        return std::chrono::seconds{0};
    }
    // Never more often than hourly: a test moves hundreds of megabytes.
    return std::chrono::seconds{std::clamp<qint64>(seconds, 3600, qint64{7} * 86400)};
}

void SpeedTestSchedule::setTiles(const QList<BehaviourTile>& tiles) {
    std::chrono::seconds every{0};
    for (const BehaviourTile& tile : tiles) {
        const std::chrono::seconds own = everyOf(tile.instance.settings.value_or(WidgetSettings{}));
        if (own.count() > 0 && (every.count() == 0 || own < every)) {
            every = own;
        }
    }
    if (every == m_every) {
        return;
    }
    m_every = every;
    m_checks.cancel();
    if (every.count() == 0) {
        return;
    }
    m_checks =
        m_scheduler.repeating(checkInterval, std::chrono::minutes(1), this, [this] { check(); });
    check();
}

void SpeedTestSchedule::check() {
    const QDateTime now = m_clock.now();
    if (m_failures > 0) {
        const qint64 wait = std::min<qint64>(std::chrono::seconds(checkInterval).count()
                                                 << std::min(m_failures - 1, 20),
                                             m_every.count());
        if (m_started.secsTo(now) < wait) {
            return;
        }
    }
    const bool wasRunning = m_service.phase().isRunning();
    m_service.runIfDue(m_every, now);
    if (!wasRunning && m_service.phase().isRunning()) {
        m_started = now;
        m_running = true;
    }
}

void SpeedTestSchedule::follow() {
    if (!m_running || m_service.phase().isRunning()) {
        return;
    }
    m_running = false;
    // A test a person cancelled counts as neither.
    if (m_service.phase().kind == SpeedTestPhase::Kind::failed) {
        ++m_failures;
    } else if (m_service.phase().kind == SpeedTestPhase::Kind::done) {
        m_failures = 0;
    }
}

} // namespace tw
