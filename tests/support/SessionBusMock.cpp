#include "SessionBusMock.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFileInfo>
#include <QTest>

namespace tw {

namespace {

const QString python = QStringLiteral("/usr/bin/python3");

bool isRegistered(const QString& service) {
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(service);
}

} // namespace

SessionBusMock::SessionBusMock() {
    if (!QFileInfo::exists(python) ||
        QProcess::execute(python, {QStringLiteral("-c"), QStringLiteral("import dbusmock")}) != 0) {
        m_skipReason = QStringLiteral("python3-dbusmock is not installed");
        return;
    }
    m_bus.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--session"), QStringLiteral("--nofork"),
                 QStringLiteral("--print-address=1")});
    if (!m_bus.waitForStarted(5000) || !m_bus.waitForReadyRead(5000)) {
        m_skipReason = QStringLiteral("dbus-daemon did not start");
        return;
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
}

SessionBusMock::~SessionBusMock() {
    stopServices();
    end(m_bus);
}

bool SessionBusMock::startService(const QString& service, const QStringList& arguments) {
    auto process = std::make_unique<QProcess>();
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process->start(python,
                   QStringList{QStringLiteral("-m"), QStringLiteral("dbusmock")} + arguments);
    m_services.emplace_back(service, std::move(process));
    return QTest::qWaitFor([&] { return isRegistered(service); }, 10000);
}

void SessionBusMock::stopServices() {
    for (auto& entry : m_services) {
        end(*entry.second);
        const QString& service = entry.first;
        // A service that lingers only costs the next start a clash, which its test reports.
        (void)QTest::qWaitFor([&] { return !isRegistered(service); }, 5000);
    }
    m_services.clear();
}

void SessionBusMock::end(QProcess& process) {
    if (process.state() == QProcess::NotRunning) {
        return;
    }
    process.terminate();
    if (!process.waitForFinished(3000)) {
        process.kill();
        process.waitForFinished(3000);
    }
}

} // namespace tw
