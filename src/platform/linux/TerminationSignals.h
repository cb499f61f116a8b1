// SIGTERM, SIGINT and SIGHUP (a logout, Ctrl+C, a closed terminal) brought onto the event loop,
// so that the program quits the ordinary way and every store writes what it still holds. A
// second such signal while quitting ends the program at once.
#pragma once

#include <QObject>

class QSocketNotifier;

namespace tw {

class TerminationSignals final : public QObject {
    Q_OBJECT
public:
    // One at a time: the handlers are the process's.
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;
    Q_DISABLE_COPY_MOVE(TerminationSignals)

Q_SIGNALS:
    void received(int signal);

private:
    void read();

    QSocketNotifier* m_notifier = nullptr;
};

} // namespace tw
