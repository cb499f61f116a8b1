#include "readings/PoolSampleRunner.h"

#include <QPointer>

namespace tw {

PoolSampleRunner::PoolSampleRunner() {
    // One thread: the readers keep their last counters and must never be read twice at once.
    m_pool.setMaxThreadCount(1);
    m_pool.setObjectName(QStringLiteral("readings"));
}

PoolSampleRunner::~PoolSampleRunner() {
    m_pool.clear();
    m_pool.waitForDone();
}

void PoolSampleRunner::run(std::function<void()> work, const QObject* context,
                           std::function<void()> done) {
    // The context is looked at only on the main thread, where it may be destroyed.
    QPointer<const QObject> receiver(context);
    m_pool.start([this, work = std::move(work), receiver, done = std::move(done)]() mutable {
        work();
        QMetaObject::invokeMethod(
            &m_home,
            [receiver, done = std::move(done)] {
                if (receiver) {
                    done();
                }
            },
            Qt::QueuedConnection);
    });
}

} // namespace tw
