// The link to a person's Home Assistant: the list of states over REST, then the WebSocket API for
// changes as they happen and for toggles. It runs only while `setActive` says a tile shows it and
// tries again after a dropped or refused connection, waiting longer each time.
#pragma once

#include "connected/SmartHomeBoard.h"
#include "platform/ScheduledTask.h"

#include <QObject>
#include <QUrl>

#include <chrono>
#include <memory>

class QWebSocket;

namespace tw {

class Clock;
class HttpClient;
class Scheduler;
struct HaMessage;
struct HttpResponse;

class SmartHomeService final : public QObject {
    Q_OBJECT
public:
    static constexpr std::chrono::milliseconds firstRetry{1'000};
    static constexpr std::chrono::milliseconds longestRetry{60'000};
    // From opening the socket to being subscribed.
    static constexpr std::chrono::milliseconds handshakeLimit{15'000};
    // A toggle without a state change back by then is no longer shown as pending.
    static constexpr std::chrono::milliseconds toggleLimit{10'000};
    static constexpr qint64 maxBytes = 8 * 1024 * 1024;

    struct Services {
        // All must outlive the service.
        HttpClient& http;
        const Clock& clock;
        Scheduler& scheduler;
    };

    explicit SmartHomeService(const Services& services, QObject* parent = nullptr);
    ~SmartHomeService() override;

    // "http://homeassistant.local:8123", "homeassistant.local:8123": http or https; an address
    // that is none of these, or an empty token, leaves no account.
    void setAccount(const QString& address, const QString& token);
    // The address as it will be used; empty without an account.
    QUrl address() const { return m_address; }

    // Whether a tile shows the link: connects when it does, closes everything when not.
    void setActive(bool active);
    bool isActive() const { return m_active; }

    // Reads the list of states once, for the settings' picker, whether or not a tile shows it.
    void readStates();
    // Tries again at once, whatever the link's state and wait; what was read stays meanwhile.
    void reconnect();

    // Sends a toggle for the entity; false when there is no live link or it does not toggle.
    bool toggle(const QString& entityId);

    const SmartHomeBoard& board() const { return m_board; }

Q_SIGNALS:
    void boardChanged();

private:
    // What follows a read of the states: the socket, or nothing (the picker's read).
    enum class After { open, stay };

    void connectNow();
    void takeStates(const HttpResponse& response, After after);
    void openSocket();
    void onFrame(const QString& frame);
    void onMessage(const HaMessage& message);
    void send(const QByteArray& frame);
    void lose(SmartHomeStatus status, const QString& message);
    void stop();
    void publish(const SmartHomeBoard& board);
    QUrl socketAddress() const;

    Services m_services;
    QUrl m_address;
    QString m_token;
    bool m_active = false;
    SmartHomeBoard m_board;
    std::unique_ptr<QWebSocket> m_socket;
    // Bumped whenever a connection is given up, so that late answers of it are ignored.
    int m_generation = 0;
    int m_nextId = 1;
    int m_subscribeId = 0;
    std::chrono::milliseconds m_retry = firstRetry;
    ScheduledTask m_retryTask;
    ScheduledTask m_handshakeTask;
    QHash<QString, std::shared_ptr<ScheduledTask>> m_toggleTasks;
    QHash<int, QString> m_toggleIds;
    // Requests of the states are made for this object, so that dropping it drops them.
    std::unique_ptr<QObject> m_requester;
};

} // namespace tw
