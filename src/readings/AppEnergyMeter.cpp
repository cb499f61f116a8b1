#include "readings/AppEnergyMeter.h"

#include "platform/Clock.h"
#include "platform/ProcessUsage.h"

namespace tw {

namespace {

double seconds(std::chrono::nanoseconds span) {
    return std::chrono::duration<double>(span).count();
}

// Percent of one core between two marks; a counter that went backwards reads as idle.
double percentBetween(double cpuBefore, double cpuAfter, double elapsed) {
    if (elapsed <= 0 || cpuAfter < cpuBefore) {
        return 0;
    }
    return (cpuAfter - cpuBefore) / elapsed * 100;
}

} // namespace

AppEnergyMeter::AppEnergyMeter(const ProcessUsage& usage, const Clock& clock, Scheduler& scheduler,
                               QObject* parent)
    : QObject(parent)
    , m_usage(usage)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_closedAt(markNow()) {}

double AppEnergyMeter::cpuSeconds() const {
    return seconds(m_usage.processorTime());
}

AppEnergyMeter::Mark AppEnergyMeter::markNow() const {
    return {cpuSeconds(), m_clock.uptime()};
}

void AppEnergyMeter::windowOpened(std::chrono::nanoseconds now) {
    const double cpu = cpuSeconds();
    if (m_closedAt && now - m_closedAt->at >= minimumClosedStretch) {
        const double elapsed = seconds(now - m_closedAt->at);
        m_closedAverage = Reading{percentBetween(m_closedAt->cpu, cpu, elapsed), elapsed};
        Q_EMIT closedAverageChanged();
    }
    m_closedAt.reset();
    m_lastLive = Mark{cpu, now};
    if (!m_liveHistory.isEmpty()) {
        m_liveHistory.clear();
        Q_EMIT liveChanged();
    }
}

void AppEnergyMeter::windowClosed(std::chrono::nanoseconds now) {
    m_timer.cancel();
    m_closedAt = Mark{cpuSeconds(), now};
}

void AppEnergyMeter::startLive() {
    if (m_timer.isActive()) {
        return;
    }
    m_lastLive = markNow();
    readMemory();
    m_timer = m_scheduler.repeating(sampleInterval, sampleInterval / 4, this, [this] { sample(); });
}

void AppEnergyMeter::sample() {
    const Mark now = markNow();
    if (m_lastLive && now.at - m_lastLive->at >= minimumSampleGap) {
        m_live = percentBetween(m_lastLive->cpu, now.cpu, seconds(now.at - m_lastLive->at));
        m_liveHistory.append(m_live);
        if (m_liveHistory.size() > historyLength) {
            m_liveHistory.remove(0, m_liveHistory.size() - historyLength);
        }
        Q_EMIT liveChanged();
    }
    m_lastLive = now;
    readMemory();
}

void AppEnergyMeter::readMemory() {
    const double megabytes = static_cast<double>(m_usage.residentBytes()) / (1024.0 * 1024.0);
    if (megabytes != m_memoryMB) {
        m_memoryMB = megabytes;
        Q_EMIT memoryMBChanged();
    }
}

} // namespace tw
