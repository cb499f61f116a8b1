// Lens pictures for the desktop's tiles, off the main thread: answers from the cache at once,
// otherwise renders a tile's latest request once it has held still for a moment.
#pragma once

#include "faces/LiquidRequest.h"
#include "platform/ScheduledTask.h"

#include <QImage>
#include <QObject>
#include <QString>
#include <QThreadPool>

#include <chrono>
#include <map>

namespace tw {

class LiquidCache;
class Scheduler;

class LiquidRenderQueue : public QObject {
    Q_OBJECT

public:
    // A tile being resized asks many times a second; only the request that stays this long renders.
    static constexpr std::chrono::milliseconds settleDelay{60};

    LiquidRenderQueue(LiquidCache& cache, Scheduler& scheduler, QObject* parent = nullptr);
    ~LiquidRenderQueue() override;

    // Asks for the picture of `request` for the tile `key`. A cached picture is published before
    // this returns, and true is returned. Otherwise any older request of the key is dropped, and
    // the picture is published once rendered; a request equal to the one already under way for the
    // key changes nothing.
    bool request(const QString& key, const LiquidRequest& request);
    // Drops whatever the tile `key` asked for; nothing is published for it.
    void cancel(const QString& key);
    // Whether the tile `key` has a request waiting or rendering.
    bool isPending(const QString& key) const { return m_pending.count(key) > 0; }
    // Where the renders run, at the lowest thread priority.
    QThreadPool& pool() { return m_pool; }

Q_SIGNALS:
    void rendered(const QString& key, const QImage& image);

private:
    struct Pending {
        LiquidRequest request;
        quint64 generation = 0;
        ScheduledTask timer;
    };
    void start(const QString& key, quint64 generation);
    void finish(const QString& key, quint64 generation, const QImage& image);

    LiquidCache& m_cache;
    Scheduler& m_scheduler;
    std::map<QString, Pending> m_pending;
    quint64 m_generation = 0;
    // Last, so that it is destroyed first and waits for renders still running.
    QThreadPool m_pool;
};

} // namespace tw
