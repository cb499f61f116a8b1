// A real HTTP/1.1 server on 127.0.0.1 that a test scripts per path: whole answers, slow ones,
// silence, broken connections, garbage, oversized and compressed bodies, redirects. Every scripted
// answer ends by itself; a stalled connection is closed after stallLimit.
#pragma once

#include <QHostAddress>
#include <QList>
#include <QMap>
#include <QPair>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <memory>
#include <zlib.h>

namespace tw::test {

class LoopbackHttpServer {
public:
    using Header = QPair<QByteArray, QByteArray>;

    struct Answer {
        enum class Kind {
            Whole,       // status, headers, body at once
            Trickle,     // the body a byte every trickleStep
            Stall,       // reads the request, never answers
            DropMidBody, // announces the body, sends half, closes
            Garbage,     // bytes that are not HTTP, then closes
            Huge,        // `size` bytes of body, written as the client takes them
            GzipBomb,    // `size` zero bytes, gzip-compressed, as Content-Encoding: gzip
        };
        Kind kind = Kind::Whole;
        int status = 200;
        QList<Header> headers;
        QByteArray body;
        qint64 size = 0;
    };

    static Answer ok(const QByteArray& body) { return {Answer::Kind::Whole, 200, {}, body, 0}; }
    static Answer status(int code, const QByteArray& body = {}) {
        return {Answer::Kind::Whole, code, {}, body, 0};
    }
    static Answer redirect(const QUrl& to, int code = 302) {
        return {Answer::Kind::Whole, code, {{"Location", to.toEncoded()}}, {}, 0};
    }
    static Answer trickle(const QByteArray& body) {
        return {Answer::Kind::Trickle, 200, {}, body, 0};
    }
    static Answer stall() { return {Answer::Kind::Stall, 0, {}, {}, 0}; }
    static Answer drop(const QByteArray& body) {
        return {Answer::Kind::DropMidBody, 200, {}, body, 0};
    }
    // Starts like a TLS handshake, as a server on the wrong port would answer.
    static constexpr char garbageBytes[] = "\x16\x03\x01 not HTTP at all\r\n\r\n";
    static Answer garbage() {
        return {Answer::Kind::Garbage,
                0,
                {},
                QByteArray::fromRawData(garbageBytes, sizeof garbageBytes - 1),
                0};
    }
    static Answer huge(qint64 bytes) { return {Answer::Kind::Huge, 200, {}, {}, bytes}; }
    static Answer gzipBomb(qint64 zeros) { return {Answer::Kind::GzipBomb, 200, {}, {}, zeros}; }

    struct Request {
        QByteArray method;
        QByteArray target; // path and query as sent
        QList<Header> headers;
        QByteArray header(const QByteArray& name) const {
            for (const Header& header : headers) {
                if (header.first.compare(name, Qt::CaseInsensitive) == 0) {
                    return header.second;
                }
            }
            return {};
        }
    };

    static constexpr std::chrono::milliseconds trickleStep{10};
    static constexpr std::chrono::milliseconds stallLimit{20'000};

    LoopbackHttpServer() {
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
        m_server.listen(QHostAddress::LocalHost, 0);
    }

    bool isListening() const { return m_server.isListening(); }
    quint16 port() const { return m_server.serverPort(); }
    // http://127.0.0.1:<port><path>
    QUrl url(const QString& path) const {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(port()).arg(path));
    }

    // Unrouted paths answer 404.
    void route(const QByteArray& path, const Answer& answer) { m_routes.insert(path, answer); }
    const QList<Request>& requests() const { return m_requests; }
    // Connections the server still holds open.
    int openConnections() const {
        int open = 0;
        for (const QPointer<QTcpSocket>& socket : m_sockets) {
            open += socket && socket->state() == QAbstractSocket::ConnectedState ? 1 : 0;
        }
        return open;
    }

    static QByteArray gzipZeros(qint64 count) {
        z_stream stream{};
        deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY);
        const QByteArray zeros(64 * 1024, '\0');
        QByteArray out;
        char buffer[16 * 1024];
        qint64 left = count;
        int flush = Z_NO_FLUSH;
        while (flush != Z_FINISH) {
            const qint64 take = std::min<qint64>(left, zeros.size());
            left -= take;
            flush = left == 0 ? Z_FINISH : Z_NO_FLUSH;
            stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(zeros.data()));
            stream.avail_in = static_cast<uInt>(take);
            do {
                stream.next_out = reinterpret_cast<Bytef*>(buffer);
                stream.avail_out = sizeof buffer;
                deflate(&stream, flush);
                out.append(buffer, static_cast<qsizetype>(sizeof buffer - stream.avail_out));
            } while (stream.avail_out == 0);
        }
        deflateEnd(&stream);
        return out;
    }

private:
    void accept() {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            m_sockets.append(socket);
            auto received = std::make_shared<QByteArray>();
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, received] {
                received->append(socket->readAll());
                // Whole answers keep the connection for the next request, as HTTP/1.1 clients
                // expect; every other answer is the connection's last.
                for (qsizetype end = received->indexOf("\r\n\r\n");
                     end >= 0 && socket->isOpen() && !socket->property("last").toBool();
                     end = received->indexOf("\r\n\r\n")) {
                    const Request request = parse(received->left(end));
                    received->remove(0, end + 4);
                    answer(socket, request);
                }
            });
        }
    }

    Request parse(const QByteArray& head) {
        const QList<QByteArray> lines = head.split('\n');
        Request request;
        const QList<QByteArray> first = lines.value(0).trimmed().split(' ');
        request.method = first.value(0);
        request.target = first.value(1);
        for (qsizetype i = 1; i < lines.size(); ++i) {
            const qsizetype colon = lines[i].indexOf(':');
            if (colon > 0) {
                request.headers.append(
                    {lines[i].left(colon).trimmed(), lines[i].mid(colon + 1).trimmed()});
            }
        }
        m_requests.append(request);
        return request;
    }

    static QByteArray head(const Answer& answer, qint64 length) {
        QByteArray text = "HTTP/1.1 " + QByteArray::number(answer.status) + " Scripted\r\n";
        text += "Content-Length: " + QByteArray::number(length) + "\r\n";
        for (const Header& header : answer.headers) {
            text += header.first + ": " + header.second + "\r\n";
        }
        return text + "\r\n";
    }

    void answer(QTcpSocket* socket, const Request& request) {
        const QByteArray path = request.target.left(
            request.target.indexOf('?') < 0 ? request.target.size() : request.target.indexOf('?'));
        const Answer answer = m_routes.value(path, status(404, "no route"));
        if (answer.kind == Answer::Kind::Whole) {
            socket->write(head(answer, answer.body.size()) + answer.body);
            return;
        }
        socket->setProperty("last", true);
        switch (answer.kind) {
        case Answer::Kind::Whole:
            return;
        case Answer::Kind::Trickle: {
            socket->write(head(answer, answer.body.size()));
            auto timer = new QTimer(socket);
            auto sent = std::make_shared<qsizetype>(0);
            QObject::connect(timer, &QTimer::timeout, socket,
                             [socket, timer, sent, body = answer.body] {
                                 if (*sent >= body.size()) {
                                     timer->stop();
                                     socket->disconnectFromHost();
                                     return;
                                 }
                                 socket->write(body.mid((*sent)++, 1));
                             });
            timer->start(trickleStep);
            return;
        }
        case Answer::Kind::Stall:
            QTimer::singleShot(stallLimit, socket, [socket] { socket->abort(); });
            return;
        case Answer::Kind::DropMidBody:
            socket->write(head(answer, answer.body.size()) +
                          answer.body.left(answer.body.size() / 2));
            socket->disconnectFromHost();
            return;
        case Answer::Kind::Garbage:
            socket->write(answer.body);
            socket->disconnectFromHost();
            return;
        case Answer::Kind::Huge: {
            socket->write(head(answer, answer.size));
            auto left = std::make_shared<qint64>(answer.size);
            const auto more = [socket, left] {
                // A few chunks ahead of the client, never the whole body in memory.
                while (*left > 0 && socket->bytesToWrite() < 256 * 1024) {
                    const qint64 chunk = std::min<qint64>(*left, 64 * 1024);
                    socket->write(QByteArray(chunk, 'x'));
                    *left -= chunk;
                }
                if (*left == 0) {
                    socket->disconnectFromHost();
                }
            };
            QObject::connect(socket, &QTcpSocket::bytesWritten, socket, more);
            more();
            return;
        }
        case Answer::Kind::GzipBomb: {
            Answer compressed = answer;
            compressed.headers.append(Header("Content-Encoding", "gzip"));
            const QByteArray body = gzipZeros(answer.size);
            socket->write(head(compressed, body.size()) + body);
            socket->disconnectFromHost();
            return;
        }
        }
    }

    QTcpServer m_server;
    QMap<QByteArray, Answer> m_routes;
    QList<Request> m_requests;
    QList<QPointer<QTcpSocket>> m_sockets;
};

} // namespace tw::test
