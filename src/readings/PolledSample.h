// A reading taken on request at most once an interval, one at a time, and handed to one
// receiver: the shape of the services whose reads walk many files.
#pragma once

#include "readings/SampleRunner.h"

#include <QDateTime>
#include <QObject>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace tw {

template <typename T>
class PolledSample {
public:
    // Runs on the runner's thread.
    using Sampler = std::function<T(const QDateTime& now)>;
    // Called on the main thread with each new reading.
    using Receiver = std::function<void(const T&)>;

    PolledSample(Sampler sampler, SampleRunner& runner, Receiver receiver)
        : m_sampler(std::move(sampler))
        , m_runner(runner)
        , m_receiver(std::move(receiver)) {}
    virtual ~PolledSample() = default;
    Q_DISABLE_COPY_MOVE(PolledSample)

    // Samples unless a read is in flight or the last began less than `minInterval` before
    // `now`; a `now` before the last read samples, as after the clock was set back.
    void refresh(std::chrono::milliseconds minInterval, const QDateTime& now) {
        if (m_inFlight) {
            return;
        }
        if (m_lastSample) {
            const qint64 since = m_lastSample->msecsTo(now);
            if (since >= 0 && since < minInterval.count()) {
                return;
            }
        }
        m_inFlight = true;
        m_lastSample = now;
        runSample(
            m_runner, &m_guard, [sampler = m_sampler, now] { return sampler(now); },
            [this](T value) {
                m_inFlight = false;
                m_receiver(value);
            });
    }

    bool inFlight() const { return m_inFlight; }
    const std::optional<QDateTime>& lastSample() const { return m_lastSample; }

private:
    Sampler m_sampler;
    SampleRunner& m_runner;
    Receiver m_receiver;
    bool m_inFlight = false;
    std::optional<QDateTime> m_lastSample;
    QObject m_guard;
};

} // namespace tw
