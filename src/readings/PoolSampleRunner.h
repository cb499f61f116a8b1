// Runs reads on a thread of its own and hands the results back through the main thread's events.
#pragma once

#include "readings/SampleRunner.h"

#include <QObject>
#include <QThreadPool>

namespace tw {

class PoolSampleRunner final : public SampleRunner {
public:
    // Made on the main thread.
    PoolSampleRunner();
    // Waits for the read in progress, which may still use the sources.
    ~PoolSampleRunner() override;

    void run(std::function<void()> work, const QObject* context,
             std::function<void()> done) override;

private:
    // Lives on the main thread as long as the pool; results are posted to it.
    QObject m_home;
    QThreadPool m_pool;
};

} // namespace tw
