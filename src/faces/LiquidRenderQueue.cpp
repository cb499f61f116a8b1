#include "faces/LiquidRenderQueue.h"

#include "faces/LiquidCache.h"
#include "faces/LiquidGlassRenderer.h"
#include "platform/Scheduler.h"

#include <QtConcurrent/QtConcurrentRun>

namespace tw {

LiquidRenderQueue::LiquidRenderQueue(LiquidCache& cache, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_cache(cache)
    , m_scheduler(scheduler) {
    // A lens picture is never urgent: the tile keeps its previous one meanwhile.
    m_pool.setThreadPriority(QThread::LowestPriority);
}

LiquidRenderQueue::~LiquidRenderQueue() {
    m_pending.clear();
    m_pool.waitForDone();
}

bool LiquidRenderQueue::request(const QString& key, const LiquidRequest& request) {
    const QImage hit = m_cache.cached(request);
    if (!hit.isNull()) {
        m_pending.erase(key);
        Q_EMIT rendered(key, hit);
        return true;
    }
    Pending& pending = m_pending[key];
    if (pending.generation != 0 && pending.request == request) {
        return false;
    }
    pending.request = request;
    pending.generation = ++m_generation;
    pending.timer = m_scheduler.singleShot(
        settleDelay, std::chrono::milliseconds(0), this,
        [this, key, generation = pending.generation] { start(key, generation); });
    return false;
}

void LiquidRenderQueue::cancel(const QString& key) {
    m_pending.erase(key);
}

void LiquidRenderQueue::start(const QString& key, quint64 generation) {
    const auto it = m_pending.find(key);
    if (it == m_pending.end() || it->second.generation != generation) {
        return;
    }
    QtConcurrent::run(&m_pool, [request = it->second.request] {
        return LiquidGlassRenderer::render(request.backdrop, request.source, request.params);
    }).then(this, [this, key, generation](const QImage& image) { finish(key, generation, image); });
}

void LiquidRenderQueue::finish(const QString& key, quint64 generation, const QImage& image) {
    const auto it = m_pending.find(key);
    if (it == m_pending.end() || it->second.generation != generation) {
        return;
    }
    const LiquidRequest request = std::move(it->second.request);
    m_pending.erase(it);
    // An oversized tile gets no picture and keeps showing its previous one.
    if (image.isNull()) {
        return;
    }
    m_cache.store(image, request);
    Q_EMIT rendered(key, image);
}

} // namespace tw
