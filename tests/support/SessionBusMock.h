// A private session bus for one test process, with python3-dbusmock services on it.
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace tw {

class SessionBusMock {
public:
    // Starts dbus-daemon and points DBUS_SESSION_BUS_ADDRESS at it; do this before anything
    // touches the session bus, which Qt connects to once per process.
    SessionBusMock();
    ~SessionBusMock();
    SessionBusMock(const SessionBusMock&) = delete;
    SessionBusMock& operator=(const SessionBusMock&) = delete;

    // Why the bus or dbusmock is not there; empty when all is well.
    QString skipReason() const { return m_skipReason; }

    // "python3 -m dbusmock <arguments>", waiting until `service` is on the bus.
    bool startService(const QString& service, const QStringList& arguments);
    // Ends every service started here and waits until their names are gone.
    void stopServices();

private:
    static void end(QProcess& process);

    QProcess m_bus;
    std::vector<std::pair<QString, std::unique_ptr<QProcess>>> m_services;
    QString m_skipReason;
};

} // namespace tw
