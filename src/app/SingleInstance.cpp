#include "app/SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QUrl>

namespace tw {

Q_LOGGING_CATEGORY(lcSingleInstance, "SingleInstance")

namespace {

constexpr int kConnectTimeoutMs = 500;
// "show", then the section and the page the window should open at, if any: one line.
const QByteArray kShow = QByteArrayLiteral("show");
// "open" and a file's absolute path, percent-encoded so that blanks and line ends stay inside.
const QByteArray kOpen = QByteArrayLiteral("open");
// A line holds a few words or one path; anything longer is not one.
constexpr qint64 kMaxLine = 8192;

} // namespace

QString SingleInstance::serverName(const QString& appSupportDir) {
    const QByteArray key = QDir(appSupportDir).absolutePath().toUtf8() + '\0' + qgetenv("USER");
    return QStringLiteral("tarnwick-") +
           QString::fromLatin1(
               QCryptographicHash::hash(key, QCryptographicHash::Sha256).toHex().left(16));
}

bool SingleInstance::namesFileToOpen(const QString& argument) {
    if (argument.startsWith(QLatin1Char('-'))) {
        return false;
    }
    for (const QLatin1String extension :
         {QLatin1String(".twkwidget"), QLatin1String(".twklayout"), QLatin1String(".twkboard")}) {
        if (argument.endsWith(extension, Qt::CaseInsensitive)) {
            return true;
        }
    }
    return false;
}

QStringList SingleInstance::filesToOpen(const QStringList& arguments) {
    QStringList files;
    for (const QString& argument : arguments.mid(1)) {
        if (namesFileToOpen(argument)) {
            files.append(QFileInfo(argument).absoluteFilePath());
        }
    }
    return files;
}

std::unique_ptr<SingleInstance> SingleInstance::claim(const QString& name, const QString& section,
                                                      const QString& page,
                                                      const QStringList& files) {
    QLocalSocket probe;
    probe.connectToServer(name);
    if (probe.waitForConnected(kConnectTimeoutMs)) {
        // Words cannot carry blanks or line ends; a wish that has them is no wish.
        const auto word = [](const QString& text) {
            return text.contains(QRegularExpression(QStringLiteral("\\s"))) ? QByteArray()
                                                                            : text.toUtf8();
        };
        for (const QString& file : files) {
            probe.write(kOpen + ' ' + QUrl::toPercentEncoding(file) + '\n');
        }
        if (files.isEmpty()) {
            probe.write(kShow + ' ' + word(section) + ' ' + word(page) + '\n');
        }
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
                // Whole lines only; a line longer than any wish is dropped with the rest.
                while (socket->canReadLine()) {
                    handle(socket->readLine(kMaxLine));
                }
                if (socket->bytesAvailable() >= kMaxLine) {
                    socket->readAll();
                    socket->abort();
                }
            });
        }
    });
}

void SingleInstance::handle(const QByteArray& line) {
    const QList<QByteArray> words = line.trimmed().split(' ');
    if (words.value(0) == kShow) {
        Q_EMIT activationRequested(QString::fromUtf8(words.value(1)),
                                   QString::fromUtf8(words.value(2)));
    } else if (words.value(0) == kOpen && words.size() == 2 && !words.value(1).isEmpty()) {
        Q_EMIT openRequested(QUrl::fromPercentEncoding(words.value(1)));
    }
}

} // namespace tw
