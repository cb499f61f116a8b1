// A private session bus for one test process, with python3-dbusmock services on it.
#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTest>

#include <memory>
#include <vector>

namespace tw {

// A method of an object made by dbusmock's AddObject: `code` is Python run on each call.
struct MockMethod {
    QString name;
    QString inSignature;
    QString outSignature;
    QString code;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const MockMethod& method) {
    argument.beginStructure();
    argument << method.name << method.inSignature << method.outSignature << method.code;
    argument.endStructure();
    return argument;
}
inline const QDBusArgument& operator>>(const QDBusArgument& argument, MockMethod& method) {
    argument.beginStructure();
    argument >> method.name >> method.inSignature >> method.outSignature >> method.code;
    argument.endStructure();
    return argument;
}

} // namespace tw

Q_DECLARE_METATYPE(tw::MockMethod)

namespace tw {

class SessionBusMock {
public:
    // Starts dbus-daemon and points DBUS_SESSION_BUS_ADDRESS at it; do this before anything
    // touches the session bus, which Qt connects to once per process.
    SessionBusMock() {
        if (!QFileInfo::exists(python) ||
            QProcess::execute(python, {QStringLiteral("-c"), QStringLiteral("import dbusmock")}) !=
                0) {
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
    ~SessionBusMock() {
        stopServices();
        end(m_bus);
    }
    SessionBusMock(const SessionBusMock&) = delete;
    SessionBusMock& operator=(const SessionBusMock&) = delete;

    // Why the bus or dbusmock is not there; empty when all is well.
    QString skipReason() const { return m_skipReason; }

    // "python3 -m dbusmock <arguments>", waiting until `service` is on the bus.
    bool startService(const QString& service, const QStringList& arguments) {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(python,
                       QStringList{QStringLiteral("-m"), QStringLiteral("dbusmock")} + arguments);
        m_services.emplace_back(service, std::move(process));
        return QTest::qWaitFor([&] { return isRegistered(service); }, 10000);
    }
    // Calls `method` of a service on the session bus; true when answered, else the error logged.
    static bool call(const QString& service, const QString& path, const QString& interface,
                     const QString& method, const QVariantList& arguments = {}) {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        const QDBusMessage reply = QDBusConnection::sessionBus().call(message);
        if (reply.type() != QDBusMessage::ReplyMessage) {
            qWarning("%s: %s", qPrintable(method), qPrintable(reply.errorMessage()));
        }
        return reply.type() == QDBusMessage::ReplyMessage;
    }
    // Sets a property of a service's object through org.freedesktop.DBus.Properties.
    static bool setProperty(const QString& service, const QString& path, const QString& interface,
                            const QString& name, const QVariant& value) {
        return call(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                    QStringLiteral("Set"),
                    {interface, name, QVariant::fromValue(QDBusVariant(value))});
    }
    // Calls `method` of dbusmock's control interface on the object `path` of `service`.
    static QDBusMessage mockCall(const QString& service, const QString& path, const QString& method,
                                 const QVariantList& arguments,
                                 QDBusConnection bus = QDBusConnection::sessionBus()) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            service, path, QStringLiteral("org.freedesktop.DBus.Mock"), method);
        call.setArguments(arguments);
        return bus.call(call);
    }
    // Adds an object to a service started without a template, through its object `mockPath`.
    static bool addObject(const QString& service, const QString& mockPath, const QString& path,
                          const QString& interface, const QVariantMap& properties,
                          const QList<MockMethod>& methods) {
        qDBusRegisterMetaType<MockMethod>();
        qDBusRegisterMetaType<QList<MockMethod>>();
        const QDBusMessage reply =
            mockCall(service, mockPath, QStringLiteral("AddObject"),
                     {path, interface, properties, QVariant::fromValue(methods)});
        if (reply.type() != QDBusMessage::ReplyMessage) {
            qWarning("AddObject %s: %s", qPrintable(path), qPrintable(reply.errorMessage()));
        }
        return reply.type() == QDBusMessage::ReplyMessage;
    }
    // Ends every service started here and waits until their names are gone.
    void stopServices() {
        for (auto& entry : m_services) {
            end(*entry.second);
            const QString& service = entry.first;
            // A service that lingers only costs the next start a clash, which its test reports.
            (void)QTest::qWaitFor([&] { return !isRegistered(service); }, 5000);
        }
        m_services.clear();
    }

private:
    static inline const QString python = QStringLiteral("/usr/bin/python3");

    static bool isRegistered(const QString& service) {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(service);
    }
    static void end(QProcess& process) {
        if (process.state() == QProcess::NotRunning) {
            return;
        }
        process.terminate();
        if (!process.waitForFinished(3000)) {
            process.kill();
            process.waitForFinished(3000);
        }
    }

    QProcess m_bus;
    std::vector<std::pair<QString, std::unique_ptr<QProcess>>> m_services;
    QString m_skipReason;
};

} // namespace tw
