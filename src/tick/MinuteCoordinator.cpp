#include "tick/MinuteCoordinator.h"

#include "tick/TickCoordinator.h"

namespace tw {

MinuteCoordinator::MinuteCoordinator(TickCoordinator& ticker, QObject* parent)
    : QObject(parent)
    , m_now(ticker.currentTime()) {
    connect(&ticker.cadence(), &Cadence::minutes, this, [this](const QDateTime& date) {
        if (date != m_now) {
            m_now = date;
            Q_EMIT nowChanged(m_now);
        }
    });
}

} // namespace tw
