// One reading shared by every caller: the last one while it is fresh, and a read in flight that
// later callers join, so that many tiles cost one read.
#pragma once

#include "readings/SampleRunner.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QPointer>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace tw {

// `T` has a `sampledAt` date.
template <typename T>
class SharedSample {
public:
    // Runs on the runner's thread.
    using Sampler = std::function<T(const QDateTime& now)>;
    using Receiver = std::function<void(const T&)>;

    SharedSample(std::chrono::milliseconds freshFor, Sampler sampler, SampleRunner& runner)
        : m_freshFor(freshFor)
        , m_sampler(std::move(sampler))
        , m_runner(runner) {}
    virtual ~SharedSample() = default;
    Q_DISABLE_COPY_MOVE(SharedSample)

    // The reading for `now`, given to `receiver` on the main thread unless `context` is gone:
    // at once while the last one is younger than the interval (a date before it misses), else
    // once the read in flight, or a new one, is done.
    void snapshot(const QDateTime& now, const QObject* context, Receiver receiver) {
        if (m_cached) {
            const qint64 age = m_cached->sampledAt.msecsTo(now);
            if (age >= 0 && age < m_freshFor.count()) {
                receiver(*m_cached);
                return;
            }
        }
        m_waiting.append({QPointer<const QObject>(context), std::move(receiver)});
        if (m_inFlight) {
            return;
        }
        m_inFlight = true;
        runSample(
            m_runner, &m_guard, [sampler = m_sampler, now] { return sampler(now); },
            [this](T value) {
                m_cached = std::move(value);
                m_inFlight = false;
                const auto waiting = std::exchange(m_waiting, {});
                for (const auto& [receiverContext, waiter] : waiting) {
                    if (receiverContext) {
                        waiter(*m_cached);
                    }
                }
            });
    }

    const std::optional<T>& cached() const { return m_cached; }
    bool inFlight() const { return m_inFlight; }

private:
    std::chrono::milliseconds m_freshFor;
    Sampler m_sampler;
    SampleRunner& m_runner;
    std::optional<T> m_cached;
    bool m_inFlight = false;
    QList<std::pair<QPointer<const QObject>, Receiver>> m_waiting;
    // A result that arrives after this is gone is dropped.
    QObject m_guard;
};

} // namespace tw
