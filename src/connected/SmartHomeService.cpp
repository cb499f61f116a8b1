#include "connected/SmartHomeService.h"

#include "connected/ConnectedLog.h"
#include "connected/HaDecoding.h"
#include "net/HttpClient.h"
#include "platform/Clock.h"
#include "platform/Scheduler.h"
#include "text/L.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QWebSocket>

namespace tw {

namespace {

using std::chrono::milliseconds;

QString unreachableWords() {
    return L("smarthome.unreachable", QStringLiteral("Home Assistant does not answer"));
}

QString refusedWords() {
    return L("smarthome.unauthorised", QStringLiteral("Home Assistant refused the token"));
}

QString failedWords() {
    return L("smarthome.failed", QStringLiteral("Home Assistant's answer could not be read"));
}

} // namespace

SmartHomeService::SmartHomeService(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_requester(std::make_unique<QObject>()) {}

SmartHomeService::~SmartHomeService() {
    stop();
}

void SmartHomeService::setAccount(const QString& address, const QString& token) {
    QUrl url = QUrl::fromUserInput(address.trimmed());
    const QString scheme = url.scheme();
    if (!url.isValid() || url.host().isEmpty() ||
        (scheme != QLatin1String("http") && scheme != QLatin1String("https")) ||
        token.trimmed().isEmpty()) {
        url = QUrl();
    } else {
        url = url.adjusted(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment |
                           QUrl::RemoveUserInfo);
    }
    const QString trimmedToken = url.isEmpty() ? QString() : token.trimmed();
    if (url == m_address && trimmedToken == m_token) {
        return;
    }
    stop();
    m_address = url;
    m_token = trimmedToken;
    m_retry = firstRetry;
    SmartHomeBoard fresh;
    fresh.status = m_address.isEmpty() ? SmartHomeStatus::noAccount : SmartHomeStatus::idle;
    publish(fresh);
    if (m_active && !m_address.isEmpty()) {
        connectNow();
    }
}

void SmartHomeService::setActive(bool active) {
    if (active == m_active) {
        return;
    }
    m_active = active;
    if (!active) {
        stop();
        // What was read stays for the next time a tile shows it; the link itself is down.
        if (m_board.status != SmartHomeStatus::noAccount &&
            m_board.status != SmartHomeStatus::unauthorised) {
            SmartHomeBoard board = m_board;
            board.status = SmartHomeStatus::idle;
            board.message.clear();
            board.retryAt = {};
            board.pending.clear();
            publish(board);
        }
    } else if (!m_address.isEmpty() && m_board.status != SmartHomeStatus::unauthorised) {
        m_retry = firstRetry;
        connectNow();
    }
}

void SmartHomeService::readStates() {
    if (m_address.isEmpty()) {
        return;
    }
    HttpRequest request;
    request.url = m_address.resolved(QUrl(QStringLiteral("/api/states")));
    request.headers = {{"Authorization", "Bearer " + m_token.toUtf8()}};
    request.maxBytes = maxBytes;
    m_services.http.get(request, m_requester.get(), [this](const HttpResponse& response) {
        takeStates(response, After::stay);
    });
}

void SmartHomeService::reconnect() {
    if (m_address.isEmpty()) {
        return;
    }
    stop();
    m_retry = firstRetry;
    if (m_active) {
        connectNow();
    } else {
        readStates();
    }
}

void SmartHomeService::connectNow() {
    m_retryTask.cancel();
    SmartHomeBoard board = m_board;
    board.status = SmartHomeStatus::connecting;
    board.retryAt = {};
    publish(board);
    HttpRequest request;
    request.url = m_address.resolved(QUrl(QStringLiteral("/api/states")));
    request.headers = {{"Authorization", "Bearer " + m_token.toUtf8()}};
    request.maxBytes = maxBytes;
    const int generation = ++m_generation;
    m_services.http.get(request, m_requester.get(), [this, generation](const HttpResponse& r) {
        if (generation == m_generation && m_active) {
            takeStates(r, After::open);
        }
    });
}

void SmartHomeService::takeStates(const HttpResponse& response, After after) {
    // A read for the picker reports its failure only where no link of its own reports one.
    const auto fail = [&](SmartHomeStatus status, const QString& words) {
        if (after == After::open) {
            lose(status, words);
        } else if (!m_active) {
            SmartHomeBoard board = m_board;
            board.status = status;
            board.message = words;
            publish(board);
        }
    };
    if (response.status == 401 || response.status == 403) {
        fail(SmartHomeStatus::unauthorised, refusedWords());
        return;
    }
    if (response.error != HttpError::None) {
        qCInfo(lcSmartHome) << "no answer from" << m_address.host() << response.message;
        fail(SmartHomeStatus::unreachable, unreachableWords());
        return;
    }
    const std::optional<QList<HaEntity>> states =
        response.isSuccess() ? decodeHaStates(response.body) : std::nullopt;
    if (!states) {
        qCInfo(lcSmartHome) << "states answered" << response.status;
        fail(SmartHomeStatus::failed, failedWords());
        return;
    }
    SmartHomeBoard board = m_board;
    board.entities.clear();
    for (const HaEntity& entity : *states) {
        board.entities.insert(entity.id, entity);
    }
    board.statesRead = true;
    board.updated = m_services.clock.now();
    if (after == After::stay && !m_active) {
        board.status = SmartHomeStatus::idle;
        board.message.clear();
    }
    publish(board);
    if (after == After::open) {
        openSocket();
    }
}

QUrl SmartHomeService::socketAddress() const {
    QUrl url = m_address;
    url.setScheme(m_address.scheme() == QLatin1String("https") ? QStringLiteral("wss")
                                                               : QStringLiteral("ws"));
    url.setPath(QStringLiteral("/api/websocket"));
    return url;
}

void SmartHomeService::openSocket() {
    m_socket = std::make_unique<QWebSocket>();
    m_socket->setMaxAllowedIncomingMessageSize(maxBytes);
    m_socket->setMaxAllowedIncomingFrameSize(maxBytes);
    QWebSocket* socket = m_socket.get();
    const int generation = m_generation;
    connect(socket, &QWebSocket::textMessageReceived, this, [this, generation](const QString& f) {
        if (generation == m_generation) {
            onFrame(f);
        }
    });
    connect(socket, &QWebSocket::disconnected, this, [this, generation] {
        if (generation == m_generation) {
            qCInfo(lcSmartHome) << "connection closed";
            lose(SmartHomeStatus::unreachable, unreachableWords());
        }
    });
    m_handshakeTask = m_services.scheduler.singleShot(
        handshakeLimit, milliseconds(500), this, [this, generation] {
            if (generation == m_generation) {
                lose(SmartHomeStatus::unreachable, unreachableWords());
            }
        });
    socket->open(socketAddress());
}

void SmartHomeService::onFrame(const QString& frame) {
    onMessage(decodeHaMessage(frame.toUtf8()));
}

void SmartHomeService::onMessage(const HaMessage& message) {
    switch (message.type) {
    case HaMessage::Type::authRequired:
        send(QJsonDocument(QJsonObject{{u"type"_qs, u"auth"_qs}, {u"access_token"_qs, m_token}})
                 .toJson(QJsonDocument::Compact));
        return;
    case HaMessage::Type::authOk:
        m_subscribeId = m_nextId++;
        send(QJsonDocument(QJsonObject{{u"id"_qs, m_subscribeId},
                                       {u"type"_qs, u"subscribe_events"_qs},
                                       {u"event_type"_qs, u"state_changed"_qs}})
                 .toJson(QJsonDocument::Compact));
        return;
    case HaMessage::Type::authInvalid:
        qCInfo(lcSmartHome) << "token refused:" << message.message;
        lose(SmartHomeStatus::unauthorised, refusedWords());
        return;
    case HaMessage::Type::result:
        if (message.id == m_subscribeId && m_subscribeId != 0) {
            m_subscribeId = 0;
            m_handshakeTask.cancel();
            if (!message.success) {
                lose(SmartHomeStatus::failed, failedWords());
                return;
            }
            m_retry = firstRetry;
            SmartHomeBoard board = m_board;
            board.status = SmartHomeStatus::live;
            board.message.clear();
            board.updated = m_services.clock.now();
            publish(board);
        } else if (m_toggleIds.contains(message.id)) {
            const QString entity = m_toggleIds.take(message.id);
            if (!message.success) {
                SmartHomeBoard board = m_board;
                board.pending.remove(entity);
                board.refused.insert(entity, message.message.isEmpty()
                                                 ? L("smarthome.toggleRefused",
                                                     QStringLiteral("Home Assistant refused"))
                                                 : message.message);
                m_toggleTasks.remove(entity);
                publish(board);
            }
        }
        return;
    case HaMessage::Type::stateChanged: {
        // The hot path: changed in place, so that a home of thousands of entities costs no copy
        // of the board per change.
        const HaEntity& entity = *message.entity;
        const auto kept = m_board.entities.find(entity.id);
        const bool known = kept != m_board.entities.end();
        if (message.removed) {
            if (known) {
                m_board.entities.erase(kept);
            }
        } else if (known) {
            *kept = entity;
        } else if (m_board.entities.size() < maxHaEntities) {
            m_board.entities.insert(entity.id, entity);
        }
        m_board.pending.remove(entity.id);
        m_board.refused.remove(entity.id);
        m_toggleTasks.remove(entity.id);
        m_board.updated = m_services.clock.now();
        Q_EMIT boardChanged();
        return;
    }
    case HaMessage::Type::other:
        return;
    }
}

bool SmartHomeService::toggle(const QString& entityId) {
    const auto entity = m_board.entities.constFind(entityId);
    if (m_board.status != SmartHomeStatus::live || !m_socket || entity == m_board.entities.cend() ||
        !entity->isToggleable()) {
        return false;
    }
    const int id = m_nextId++;
    m_toggleIds.insert(id, entityId);
    send(QJsonDocument(QJsonObject{{u"id"_qs, id},
                                   {u"type"_qs, u"call_service"_qs},
                                   {u"domain"_qs, entity->domain()},
                                   {u"service"_qs, u"toggle"_qs},
                                   {u"service_data"_qs, QJsonObject{{u"entity_id"_qs, entityId}}}})
             .toJson(QJsonDocument::Compact));
    SmartHomeBoard board = m_board;
    board.pending.insert(entityId);
    board.refused.remove(entityId);
    publish(board);
    auto task = std::make_shared<ScheduledTask>(
        m_services.scheduler.singleShot(toggleLimit, milliseconds(500), this, [this, entityId] {
            SmartHomeBoard late = m_board;
            late.pending.remove(entityId);
            m_toggleTasks.remove(entityId);
            publish(late);
        }));
    m_toggleTasks.insert(entityId, task);
    return true;
}

void SmartHomeService::send(const QByteArray& frame) {
    if (m_socket) {
        m_socket->sendTextMessage(QString::fromUtf8(frame));
    }
}

void SmartHomeService::lose(SmartHomeStatus status, const QString& message) {
    stop();
    SmartHomeBoard board = m_board;
    board.status = status;
    board.message = message;
    board.pending.clear();
    if (status != SmartHomeStatus::unauthorised && m_active) {
        const std::chrono::milliseconds wait = m_retry;
        m_retry = std::min(m_retry * 2, longestRetry);
        board.retryAt = m_services.clock.now().addMSecs(wait.count());
        m_retryTask = m_services.scheduler.singleShot(wait, wait / 10, this, [this] {
            if (m_active && !m_address.isEmpty()) {
                connectNow();
            }
        });
    }
    publish(board);
}

void SmartHomeService::stop() {
    ++m_generation;
    m_retryTask.cancel();
    m_handshakeTask.cancel();
    m_toggleTasks.clear();
    m_toggleIds.clear();
    m_subscribeId = 0;
    // Answers still on their way to the old requester never arrive.
    m_requester = std::make_unique<QObject>();
    if (m_socket) {
        // Often called from one of the socket's own signals: it goes once they are done.
        QWebSocket* socket = m_socket.release();
        socket->disconnect(this);
        socket->abort();
        socket->deleteLater();
    }
}

void SmartHomeService::publish(const SmartHomeBoard& board) {
    if (board == m_board) {
        return;
    }
    m_board = board;
    Q_EMIT boardChanged();
}

} // namespace tw
