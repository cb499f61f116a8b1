// The time at the minute grain: moves once per new minute of the tick, so minute views sleep
// between.
#pragma once

#include <QDateTime>
#include <QObject>

namespace tw {

class TickCoordinator;

class MinuteCoordinator final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QDateTime now READ now NOTIFY nowChanged)
public:
    // Starts at the ticker's current time (pinned if a pin is set). `ticker` must outlive this.
    explicit MinuteCoordinator(TickCoordinator& ticker, QObject* parent = nullptr);

    QDateTime now() const { return m_now; }

Q_SIGNALS:
    void nowChanged(const QDateTime& now);

private:
    QDateTime m_now;
};

} // namespace tw
