#include "app/SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalSocket>
#include <QLoggingCategory>
#include <QRegularExpression>

namespace tw {

Q_LOGGING_CATEGORY(lcSingleInstance, "SingleInstance")

namespace {

constexpr int kConnectTimeoutMs = 500;
// "show", then the section and the page the window should open at, if any: one line.
const QByteArray kShow = QByteArrayLiteral("show");
// A wish is a few words; anything longer is not one.
constexpr qint64 kMaxMessage = 256;

} // namespace

QString SingleInstance::serverName(const QString& appSupportDir) {
    const QByteArray key = QDir(appSupportDir).absolutePath().toUtf8() + '\0' + qgetenv("USER");
    return QStringLiteral("tarnwick-") +
           QString::fromLatin1(
               QCryptographicHash::hash(key, QCryptographicHash::Sha256).toHex().left(16));
}

std::unique_ptr<SingleInstance> SingleInstance::claim(const QString& name, const QString& section,
                                                      const QString& page) {
    QLocalSocket probe;
    probe.connectToServer(name);
    if (probe.waitForConnected(kConnectTimeoutMs)) {
        // Words cannot carry blanks or line ends; a wish that has them is no wish.
        const auto word = [](const QString& text) {
            return text.contains(QRegularExpression(QStringLiteral("\\s"))) ? QByteArray()
                                                                            : text.toUtf8();
        };
        probe.write(kShow + ' ' + word(section) + ' ' + word(page) + '\n');
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
                if (!socket->canReadLine() && socket->bytesAvailable() < kMaxMessage) {
                    return;
                }
                const QList<QByteArray> words = socket->readLine(kMaxMessage).trimmed().split(' ');
                socket->readAll();
                if (words.value(0) == kShow) {
                    Q_EMIT activationRequested(QString::fromUtf8(words.value(1)),
                                               QString::fromUtf8(words.value(2)));
                }
            });
        }
    });
}

} // namespace tw
