#include "platform/QtScheduler.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

namespace tw {

ScheduledTask QtScheduler::singleShot(Duration delay, Duration tolerance, const QObject* context,
                                      std::function<void()> action) {
    return start(delay, tolerance, context, std::move(action), true);
}

ScheduledTask QtScheduler::repeating(Duration interval, Duration tolerance, const QObject* context,
                                     std::function<void()> action) {
    return start(interval, tolerance, context, std::move(action), false);
}

ScheduledTask QtScheduler::start(Duration interval, Duration tolerance, const QObject* context,
                                 std::function<void()> action, bool singleShot) {
    auto* timer = new QTimer;
    timer->setSingleShot(singleShot);
    timer->setInterval(interval);
    // Qt's coarse timers may fire up to 5 % late; anything looser than that can batch wake-ups.
    const bool loose = interval.count() > 0 && tolerance * 20 >= interval;
    timer->setTimerType(loose ? Qt::CoarseTimer : Qt::PreciseTimer);

    QPointer<QTimer> guard(timer);
    ScheduledTask task([guard] {
        if (guard) {
            guard->stop();
            guard->deleteLater();
        }
    });
    std::weak_ptr<bool> active = task.activeFlag();
    QObject::connect(timer, &QTimer::timeout, context ? context : timer,
                     [timer, active, singleShot, action = std::move(action)] {
                         if (singleShot) {
                             if (auto flag = active.lock()) {
                                 *flag = false;
                             }
                             timer->deleteLater();
                         }
                         action();
                     });
    if (context) {
        QObject::connect(context, &QObject::destroyed, timer, [timer, active] {
            if (auto flag = active.lock()) {
                *flag = false;
            }
            timer->stop();
            timer->deleteLater();
        });
    }
    timer->start();
    return task;
}

} // namespace tw
