// A speed test host on 127.0.0.1: "…/__down?bytes=N" serves N bytes and "…/__up" swallows its
// body, all connections together held to a set rate. Bounded: answers are capped in size, every
// connection is closed after a time limit, and `drop()` cuts the line as a lost network would.
#pragma once

#include <QElapsedTimer>
#include <QHostAddress>
#include <QList>
#include <QPointer>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>
#include <chrono>
#include <memory>

namespace tw::test {

struct SpeedLineLimits {
    // Of all connections together, in bits per second.
    qint64 rate = 100'000'000;
    qint64 maxAnswer = 200'000'000;
    std::chrono::milliseconds connectionLimit{30'000};
    int maxConnections = 32;
};

class SpeedTestServer {
public:
    using Limits = SpeedLineLimits;
    enum class Mode {
        serve,
        // Reads requests and never answers.
        silent,
    };

    explicit SpeedTestServer(Limits limits = {}, quint16 port = 0)
        : m_limits(limits) {
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
        m_server.listen(QHostAddress::LocalHost, port);
        QObject::connect(&m_pump, &QTimer::timeout, &m_server, [this] { pump(); });
        m_pump.setTimerType(Qt::PreciseTimer);
        m_pump.start(2);
        m_clock.start();
    }

    bool isListening() const { return m_server.isListening(); }
    quint16 port() const { return m_server.serverPort(); }
    // What to give as TKW_ENDPOINT_BASE.
    QUrl base() const { return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(port())); }

    void setMode(Mode mode) { m_mode = mode; }
    // Closes every connection at once and refuses new ones.
    void drop() {
        m_server.close();
        for (const auto& connection : std::as_const(m_connections)) {
            if (connection->socket) {
                connection->socket->abort();
            }
        }
    }

    qint64 served() const { return m_served; }
    qint64 swallowed() const { return m_swallowed; }
    // Path and query of every request, in order.
    const QStringList& targets() const { return m_targets; }

private:
    struct Connection {
        QPointer<QTcpSocket> socket;
        QByteArray head;
        qint64 toSend = 0;
        qint64 toSwallow = 0;
    };

    void accept() {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            if (m_connections.size() >= m_limits.maxConnections) {
                socket->abort();
                continue;
            }
            // Read no faster than the rate: the client's upload waits on a full window.
            socket->setReadBufferSize(256 * 1024);
            auto connection = std::make_shared<Connection>();
            connection->socket = socket;
            m_connections.append(connection);
            QTimer::singleShot(m_limits.connectionLimit, socket, [socket] { socket->abort(); });
            QObject::connect(socket, &QTcpSocket::readyRead, socket,
                             [this, connection] { readHead(*connection); });
        }
    }

    void readHead(Connection& connection) {
        while (connection.toSend == 0 && connection.toSwallow == 0 && connection.socket &&
               connection.socket->bytesAvailable() > 0) {
            connection.head += connection.socket->read(8 * 1024);
            const qsizetype end = connection.head.indexOf("\r\n\r\n");
            if (end < 0) {
                if (connection.head.size() > 64 * 1024) {
                    connection.socket->abort();
                }
                return;
            }
            const QByteArray head = connection.head.left(end);
            // Body bytes that came with the head are the start of an upload.
            const QByteArray rest = connection.head.mid(end + 4);
            connection.head.clear();
            start(connection, head, rest.size());
        }
    }

    void start(Connection& connection, const QByteArray& head, qint64 early) {
        const QList<QByteArray> lines = head.split('\n');
        const QList<QByteArray> first = lines.value(0).trimmed().split(' ');
        const QUrl target(QString::fromLatin1(first.value(1)));
        m_targets.append(QString::fromLatin1(first.value(1)));
        if (m_mode == Mode::silent) {
            connection.toSwallow = -1;
            return;
        }
        qint64 length = 0;
        for (const QByteArray& line : lines) {
            if (line.toLower().startsWith("content-length:")) {
                length = line.mid(15).trimmed().toLongLong();
            }
        }
        if (target.path().endsWith(QLatin1String("/__down"))) {
            const qint64 bytes = std::clamp<qint64>(
                QUrlQuery(target).queryItemValue(QStringLiteral("bytes")).toLongLong(), 0,
                m_limits.maxAnswer);
            connection.socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream"
                                     "\r\nContent-Length: " +
                                     QByteArray::number(bytes) + "\r\n\r\n");
            connection.toSend = bytes;
        } else if (target.path().endsWith(QLatin1String("/__up"))) {
            m_swallowed += std::min(early, length);
            connection.toSwallow = std::max<qint64>(0, length - early);
            if (connection.toSwallow == 0) {
                answerUpload(connection);
            }
        } else {
            connection.socket->write("HTTP/1.1 404 Not Found\r\nContent-Length: 8\r\n\r\nno route");
        }
    }

    void answerUpload(Connection& connection) {
        connection.socket->write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    }

    // Hands out the bytes the rate allows since the last pump, connection by connection.
    void pump() {
        const qint64 elapsed = m_clock.nsecsElapsed();
        const qint64 since = std::min<qint64>(elapsed - m_last, 20'000'000);
        m_last = elapsed;
        qint64 budget = m_limits.rate / 8 * since / 1'000'000'000 + m_carry;
        m_connections.removeIf([](const auto& c) {
            return !c->socket || c->socket->state() != QAbstractSocket::ConnectedState;
        });
        static const QByteArray zeros(64 * 1024, '\0');
        bool moved = true;
        while (budget > 0 && moved) {
            moved = false;
            for (const auto& connection : std::as_const(m_connections)) {
                QTcpSocket* socket = connection->socket;
                if (connection->toSend > 0 && socket->bytesToWrite() < 256 * 1024) {
                    const qint64 chunk =
                        std::min({connection->toSend, budget, qint64(zeros.size())});
                    socket->write(zeros.constData(), chunk);
                    connection->toSend -= chunk;
                    m_served += chunk;
                    budget -= chunk;
                    moved = true;
                } else if (connection->toSwallow > 0 && socket->bytesAvailable() > 0) {
                    const qint64 chunk =
                        std::min({connection->toSwallow, budget, socket->bytesAvailable()});
                    socket->skip(chunk);
                    connection->toSwallow -= chunk;
                    m_swallowed += chunk;
                    budget -= chunk;
                    moved = true;
                    if (connection->toSwallow == 0) {
                        answerUpload(*connection);
                    }
                }
                if (connection->toSend == 0 && connection->toSwallow == 0) {
                    readHead(*connection);
                }
                if (budget <= 0) {
                    break;
                }
            }
        }
        // What an idle line could not use is not saved up.
        m_carry = moved ? std::max<qint64>(budget, 0) : 0;
    }

    Limits m_limits;
    Mode m_mode = Mode::serve;
    QTcpServer m_server;
    QTimer m_pump;
    QElapsedTimer m_clock;
    qint64 m_last = 0;
    qint64 m_carry = 0;
    QList<std::shared_ptr<Connection>> m_connections;
    QStringList m_targets;
    qint64 m_served = 0;
    qint64 m_swallowed = 0;
};

} // namespace tw::test
