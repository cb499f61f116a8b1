// A small Home Assistant on 127.0.0.1, REST and WebSocket on one port as the real one serves
// them: GET /api/states and /api/websocket (auth, subscribe_events, call_service toggle). A test
// changes states, refuses tokens, answers garbage, stays silent or drops every connection.
// Link Qt6::WebSockets to use it.
#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QWebSocket>
#include <QWebSocketServer>

namespace tw::test {

class HomeAssistantServer {
public:
    struct Entity {
        QString state;
        QString name;
        QString unit;
    };

    // What /api/states answers instead of the states, when set.
    struct StatesAnswer {
        int status = 0;
        QByteArray body;
    };

    QString token = QStringLiteral("good-token");
    // The socket refuses even the good token (a token revoked between REST and socket).
    bool refuseSocketAuth = false;
    // The socket says nothing after opening.
    bool silentSocket = false;
    // Commands are taken and never answered.
    bool ignoreCommands = false;
    std::optional<StatesAnswer> statesAnswer;
    QMap<QString, Entity> entities;

    HomeAssistantServer() {
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
        QObject::connect(&m_sockets, &QWebSocketServer::newConnection, &m_server, [this] {
            while (QWebSocket* client = m_sockets.nextPendingConnection()) {
                welcome(client);
            }
        });
        m_server.listen(QHostAddress::LocalHost, 0);
    }
    ~HomeAssistantServer() { dropAll(); }

    QString address() const { return QStringLiteral("http://127.0.0.1:%1").arg(port()); }
    quint16 port() const { return m_server.serverPort(); }
    int statesRequests() const { return m_statesRequests; }
    int socketsOpened() const { return m_opened; }
    int subscribed() const {
        int count = 0;
        for (const Client& client : m_clients) {
            count += client.socket && client.subscription != 0 ? 1 : 0;
        }
        return count;
    }
    QList<QJsonObject> commands() const { return m_commands; }

    // Changes a state and tells every subscriber, as Home Assistant does.
    void setState(const QString& id, const QString& state) {
        entities[id].state = state;
        for (const Client& client : m_clients) {
            if (client.socket && client.subscription != 0) {
                sendEvent(client, id);
            }
        }
    }
    void dropAll() {
        for (const Client& client : m_clients) {
            if (client.socket) {
                client.socket->abort();
            }
        }
        m_clients.clear();
    }

    QJsonObject stateObject(const QString& id) const {
        const Entity entity = entities.value(id);
        QJsonObject attributes{{u"friendly_name"_qs, entity.name}};
        if (!entity.unit.isEmpty()) {
            attributes.insert(u"unit_of_measurement"_qs, entity.unit);
        }
        return {{u"entity_id"_qs, id},
                {u"state"_qs, entity.state},
                {u"attributes"_qs, attributes},
                {u"last_changed"_qs, u"2026-11-24T12:00:00+00:00"_qs}};
    }

private:
    struct Client {
        QPointer<QWebSocket> socket;
        int subscription = 0;
    };

    void accept() {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                // Peeked, so that the socket server reads the upgrade request itself.
                const QByteArray head = socket->peek(64 * 1024);
                if (!head.contains("\r\n\r\n") || socket->property("handled").toBool()) {
                    return;
                }
                socket->setProperty("handled", true);
                if (head.startsWith("GET /api/websocket")) {
                    socket->disconnect();
                    m_sockets.handleConnection(socket);
                } else {
                    answerHttp(socket, head);
                }
            });
        }
    }

    void answerHttp(QTcpSocket* socket, const QByteArray& head) {
        socket->readAll();
        int status = 404;
        QByteArray body = "{\"message\":\"Not found\"}";
        if (head.startsWith("GET /api/states ")) {
            ++m_statesRequests;
            if (!head.contains(QByteArray("Authorization: Bearer " + token.toUtf8() + "\r\n"))) {
                status = 401;
                body = "401: Unauthorized";
            } else if (statesAnswer) {
                status = statesAnswer->status;
                body = statesAnswer->body;
            } else {
                QJsonArray states;
                for (auto it = entities.cbegin(); it != entities.cend(); ++it) {
                    states.append(stateObject(it.key()));
                }
                status = 200;
                body = QJsonDocument(states).toJson(QJsonDocument::Compact);
            }
        }
        socket->write("HTTP/1.1 " + QByteArray::number(status) +
                      " X\r\nContent-Type: application/json\r\nConnection: close\r\n"
                      "Content-Length: " +
                      QByteArray::number(body.size()) + "\r\n\r\n" + body);
        socket->disconnectFromHost();
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }

    void welcome(QWebSocket* socket) {
        ++m_opened;
        m_clients.append({socket, 0});
        QObject::connect(socket, &QWebSocket::disconnected, socket, &QObject::deleteLater);
        QObject::connect(socket, &QWebSocket::textMessageReceived, socket,
                         [this, socket](const QString& text) { take(socket, text); });
        if (!silentSocket) {
            send(socket, {{u"type"_qs, u"auth_required"_qs}, {u"ha_version"_qs, u"2026.11"_qs}});
        }
    }

    void take(QWebSocket* socket, const QString& text) {
        const QJsonObject message = QJsonDocument::fromJson(text.toUtf8()).object();
        const QString type = message.value(u"type").toString();
        const int id = message.value(u"id").toInt();
        if (type == u"auth") {
            const bool good = !refuseSocketAuth && message.value(u"access_token") == token;
            send(socket, {{u"type"_qs, good ? u"auth_ok"_qs : u"auth_invalid"_qs},
                          {u"message"_qs, u"Invalid access token or password"_qs}});
            if (!good) {
                socket->close();
            }
        } else if (type == u"subscribe_events") {
            for (Client& client : m_clients) {
                client.subscription = client.socket == socket ? id : client.subscription;
            }
            send(socket, result(id, true, {}));
        } else if (type == u"call_service") {
            m_commands.append(message);
            if (ignoreCommands) {
                return;
            }
            const QString entity =
                message.value(u"service_data").toObject().value(u"entity_id").toString();
            if (!entities.contains(entity)) {
                send(socket, result(id, false, u"Entity not found"_qs));
                return;
            }
            send(socket, result(id, true, {}));
            setState(entity, entities.value(entity).state == u"on" ? u"off"_qs : u"on"_qs);
        }
    }

    static QJsonObject result(int id, bool success, const QString& error) {
        QJsonObject answer{{u"id"_qs, id}, {u"type"_qs, u"result"_qs}, {u"success"_qs, success}};
        if (!error.isEmpty()) {
            answer.insert(u"error"_qs,
                          QJsonObject{{u"code"_qs, u"not_found"_qs}, {u"message"_qs, error}});
        }
        return answer;
    }

    void sendEvent(const Client& client, const QString& id) {
        const QJsonObject data{{u"entity_id"_qs, id}, {u"new_state"_qs, stateObject(id)}};
        send(client.socket, {{u"id"_qs, client.subscription},
                             {u"type"_qs, u"event"_qs},
                             {u"event"_qs, QJsonObject{{u"event_type"_qs, u"state_changed"_qs},
                                                       {u"data"_qs, data}}}});
    }

    static void send(QWebSocket* socket, const QJsonObject& message) {
        socket->sendTextMessage(
            QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
    }

    QTcpServer m_server;
    QWebSocketServer m_sockets{QStringLiteral("ha"), QWebSocketServer::NonSecureMode};
    QList<Client> m_clients;
    QList<QJsonObject> m_commands;
    int m_statesRequests = 0;
    int m_opened = 0;
};

} // namespace tw::test
