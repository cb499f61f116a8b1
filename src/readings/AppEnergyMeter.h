// What this program costs the machine, as a person can check it: live while the configuration
// window is open, and on average over the last stretch the window stayed closed.
#pragma once

#include "platform/ScheduledTask.h"
#include "platform/Scheduler.h"

#include <QList>
#include <QObject>

#include <chrono>
#include <optional>

namespace tw {

class Clock;
class ProcessUsage;

class AppEnergyMeter final : public QObject {
    Q_OBJECT
public:
    struct Reading {
        // Of one core.
        double cpuPercent = 0;
        double seconds = 0;
        bool operator==(const Reading&) const = default;
    };

    static constexpr Scheduler::Duration sampleInterval{2000};
    // Samples kept in `liveHistory`: a minute and a half at one every two seconds.
    static constexpr int historyLength = 45;
    // A shorter closed stretch says too little and leaves the previous average alone.
    static constexpr std::chrono::seconds minimumClosedStretch{20};
    static constexpr std::chrono::milliseconds minimumSampleGap{500};

    // The first closed stretch begins now. All three must outlive the meter.
    AppEnergyMeter(const ProcessUsage& usage, const Clock& clock, Scheduler& scheduler,
                   QObject* parent = nullptr);

    // Percent of one core over the last sample.
    double live() const { return m_live; }
    // Oldest first, at most `historyLength`.
    const QList<double>& liveHistory() const { return m_liveHistory; }
    double memoryMB() const { return m_memoryMB; }
    std::optional<Reading> closedAverage() const { return m_closedAverage; }

    // `now` is the clock's uptime: a stretch across sleep counts only the time awake, as the
    // processor's own count does.
    void windowOpened(std::chrono::nanoseconds now);
    void windowClosed(std::chrono::nanoseconds now);
    // Samples every `sampleInterval` until the window closes; a second call does nothing.
    void startLive();
    void sample();
    // User plus system time of the whole process so far.
    double cpuSeconds() const;

Q_SIGNALS:
    void liveChanged();
    void memoryMBChanged();
    void closedAverageChanged();

private:
    struct Mark {
        double cpu = 0;
        std::chrono::nanoseconds at{};
    };
    Mark markNow() const;
    void readMemory();

    const ProcessUsage& m_usage;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    double m_live = 0;
    QList<double> m_liveHistory;
    double m_memoryMB = 0;
    std::optional<Reading> m_closedAverage;
    std::optional<Mark> m_closedAt;
    std::optional<Mark> m_lastLive;
    ScheduledTask m_timer;
};

} // namespace tw
