// The session's MPRIS players (org.mpris.MediaPlayer2.*): found with ListNames and followed
// through NameOwnerChanged, PropertiesChanged and Seeked while watched. Every call is
// asynchronous with a time-out, so a player that hangs or vanishes mid-call costs nothing.
#pragma once

#include "platform/MediaPlayers.h"

#include <QDBusConnection>
#include <QHash>
#include <QStringList>

#include <chrono>
#include <memory>

class QDBusMessage;
class QDBusPendingCall;

namespace tw {

class Clock;

class MprisMediaPlayers final : public MediaPlayers {
    Q_OBJECT
public:
    static constexpr std::chrono::milliseconds callTimeout{2000};

    // The clock dates what the players say; it must outlive this.
    MprisMediaPlayers(QDBusConnection bus, const Clock& clock, QObject* parent = nullptr);
    // On the session bus.
    static std::unique_ptr<MprisMediaPlayers> create(const Clock& clock);

    bool available() const override;
    void setWatching(bool watching) override;
    QList<MediaPlayerState> players() const override;
    void refresh() override;
    void send(const QString& playerId, MediaCommand command) override;

private Q_SLOTS:
    void onNameOwnerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);
    void onPropertiesChanged(const QDBusMessage& message);
    void onSeeked(const QDBusMessage& message);

private:
    void listPlayers();
    void addPlayer(const QString& name, const QString& owner);
    void removePlayer(const QString& name);
    void readPlayer(const QString& name);
    void readPosition(const QString& name);
    // Runs `done` with the reply when it comes in time, for a player still present.
    void whenAnswered(const QString& name, const QDBusPendingCall& call,
                      std::function<void(const QDBusMessage&)> done);
    MediaPlayerState* playerOwnedBy(const QString& owner);
    void announce();

    QDBusConnection m_bus;
    const Clock& m_clock;
    bool m_watching = false;
    // Well-known names in the order the players appeared.
    QStringList m_order;
    QHash<QString, MediaPlayerState> m_players;
    // Well-known name → its unique owner, which is what signals carry as their sender.
    QHash<QString, QString> m_owners;
    // Bumped on every start and stop, so that answers to an earlier watch are dropped.
    quint64 m_generation = 0;
};

} // namespace tw
