#include "app/SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalSocket>
#include <QLoggingCategory>

namespace tw {

Q_LOGGING_CATEGORY(lcSingleInstance, "SingleInstance")

namespace {

constexpr int kConnectTimeoutMs = 500;
const QByteArray kShowMessage = QByteArrayLiteral("show\n");

} // namespace

QString SingleInstance::serverName(const QString& appSupportDir) {
    const QByteArray key = QDir(appSupportDir).absolutePath().toUtf8() + '\0' + qgetenv("USER");
    return QStringLiteral("tarnwick-") +
           QString::fromLatin1(
               QCryptographicHash::hash(key, QCryptographicHash::Sha256).toHex().left(16));
}

std::unique_ptr<SingleInstance> SingleInstance::claim(const QString& name) {
    QLocalSocket probe;
    probe.connectToServer(name);
    if (probe.waitForConnected(kConnectTimeoutMs)) {
        probe.write(kShowMessage);
        probe.waitForBytesWritten(kConnectTimeoutMs);
        probe.disconnectFromServer();
        return nullptr;
    }
    auto server = std::make_unique<QLocalServer>();
    server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server->listen(name)) {
        // Nobody answered, so the socket file is left over from a host that died.
        QLocalServer::removeServer(name);
        if (!server->listen(name)) {
            qCWarning(lcSingleInstance, "cannot listen on %s: %s", qUtf8Printable(name),
                      qUtf8Printable(server->errorString()));
        }
    }
    return std::unique_ptr<SingleInstance>(new SingleInstance(std::move(server)));
}

SingleInstance::SingleInstance(std::unique_ptr<QLocalServer> server)
    : m_server(std::move(server)) {
    connect(m_server.get(), &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = m_server->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
                if (socket->readAll().contains(kShowMessage.trimmed())) {
                    Q_EMIT activationRequested();
                }
            });
        }
    });
}

} // namespace tw
