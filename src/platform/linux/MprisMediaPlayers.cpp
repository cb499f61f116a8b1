#include "platform/linux/MprisMediaPlayers.h"

#include "platform/Clock.h"
#include "platform/linux/MprisProperties.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcMedia, "NowPlaying")

namespace tw {

namespace {

const QString prefix = QStringLiteral("org.mpris.MediaPlayer2.");
const QString objectPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString rootInterface = QStringLiteral("org.mpris.MediaPlayer2");
const QString playerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString busService = QStringLiteral("org.freedesktop.DBus");
const QString busPath = QStringLiteral("/org/freedesktop/DBus");

int timeoutMs() {
    return static_cast<int>(MprisMediaPlayers::callTimeout.count());
}

QString methodOf(MediaCommand command) {
    switch (command) {
    case MediaCommand::playPause:
        return QStringLiteral("PlayPause");
    case MediaCommand::nextTrack:
        return QStringLiteral("Next");
    case MediaCommand::previousTrack:
        return QStringLiteral("Previous");
    }
    return {};
}

} // namespace

MprisMediaPlayers::MprisMediaPlayers(QDBusConnection bus, const Clock& clock, QObject* parent)
    : MediaPlayers(parent)
    , m_bus(std::move(bus))
    , m_clock(clock) {}

std::unique_ptr<MprisMediaPlayers> MprisMediaPlayers::create(const Clock& clock) {
    return std::make_unique<MprisMediaPlayers>(QDBusConnection::sessionBus(), clock);
}

bool MprisMediaPlayers::available() const {
    return m_bus.isConnected();
}

void MprisMediaPlayers::setWatching(bool watching) {
    if (watching == m_watching || !m_bus.isConnected()) {
        return;
    }
    m_watching = watching;
    ++m_generation;
    const auto link = [this](bool on, const QString& service, const QString& path,
                             const QString& interface, const QString& name, const char* slot) {
        if (on) {
            m_bus.connect(service, path, interface, name, this, slot);
        } else {
            m_bus.disconnect(service, path, interface, name, this, slot);
        }
    };
    link(watching, busService, busPath, busService, QStringLiteral("NameOwnerChanged"),
         SLOT(onNameOwnerChanged(QString, QString, QString)));
    // Any sender: signals carry the player's unique name, matched to its well-known one here.
    link(watching, QString(), objectPath, propertiesInterface, QStringLiteral("PropertiesChanged"),
         SLOT(onPropertiesChanged(QDBusMessage)));
    link(watching, QString(), objectPath, playerInterface, QStringLiteral("Seeked"),
         SLOT(onSeeked(QDBusMessage)));
    if (watching) {
        listPlayers();
        return;
    }
    const bool had = !m_order.isEmpty();
    m_order.clear();
    m_players.clear();
    m_owners.clear();
    if (had) {
        Q_EMIT changed();
    }
}

QList<MediaPlayerState> MprisMediaPlayers::players() const {
    QList<MediaPlayerState> out;
    for (const QString& name : m_order) {
        out << m_players.value(name);
    }
    return out;
}

void MprisMediaPlayers::refresh() {
    for (const QString& name : std::as_const(m_order)) {
        readPlayer(name);
    }
}

void MprisMediaPlayers::send(const QString& playerId, MediaCommand command) {
    if (!m_players.contains(playerId)) {
        qCInfo(lcMedia, "transport command %d dropped: no player %s", static_cast<int>(command),
               qUtf8Printable(playerId));
        return;
    }
    const QDBusMessage call =
        QDBusMessage::createMethodCall(playerId, objectPath, playerInterface, methodOf(command));
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, timeoutMs()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [playerId, command](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                if (w->isError()) {
                    qCInfo(lcMedia, "transport command %d to %s failed: %s",
                           static_cast<int>(command), qUtf8Printable(playerId),
                           qUtf8Printable(w->error().message()));
                }
            });
}

void MprisMediaPlayers::listPlayers() {
    const QDBusMessage call = QDBusMessage::createMethodCall(busService, busPath, busService,
                                                             QStringLiteral("ListNames"));
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, timeoutMs()), this);
    const quint64 generation = m_generation;
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, generation](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                const QDBusPendingReply<QStringList> reply = *w;
                if (generation != m_generation || reply.isError()) {
                    return;
                }
                for (const QString& name : reply.value()) {
                    if (!name.startsWith(prefix)) {
                        continue;
                    }
                    const QDBusMessage owner = QDBusMessage::createMethodCall(
                        busService, busPath, busService, QStringLiteral("GetNameOwner"));
                    auto* ask = new QDBusPendingCallWatcher(
                        m_bus.asyncCall(QDBusMessage(owner) << name, timeoutMs()), this);
                    connect(ask, &QDBusPendingCallWatcher::finished, this,
                            [this, generation, name](QDBusPendingCallWatcher* a) {
                                a->deleteLater();
                                const QDBusPendingReply<QString> r = *a;
                                if (generation == m_generation && !r.isError()) {
                                    addPlayer(name, r.value());
                                }
                            });
                }
            });
}

void MprisMediaPlayers::onNameOwnerChanged(const QString& name, const QString& oldOwner,
                                           const QString& newOwner) {
    if (!name.startsWith(prefix)) {
        return;
    }
    if (!oldOwner.isEmpty()) {
        removePlayer(name);
    }
    if (!newOwner.isEmpty()) {
        addPlayer(name, newOwner);
    }
}

void MprisMediaPlayers::addPlayer(const QString& name, const QString& owner) {
    if (m_players.contains(name)) {
        return;
    }
    MediaPlayerState state;
    state.source.id = name;
    // Until it says its own name: "org.mpris.MediaPlayer2.vlc.instance42" is "vlc".
    state.source.name = name.mid(prefix.size()).section(QLatin1Char('.'), 0, 0);
    state.heardAt = m_clock.now();
    m_order << name;
    m_players.insert(name, state);
    m_owners.insert(name, owner);
    qCInfo(lcMedia, "player appeared: %s", qUtf8Printable(name));

    const QDBusMessage root = QDBusMessage::createMethodCall(name, objectPath, propertiesInterface,
                                                             QStringLiteral("GetAll"))
                              << rootInterface;
    whenAnswered(name, m_bus.asyncCall(root, timeoutMs()), [this, name](const QDBusMessage& reply) {
        MediaPlayerState& player = m_players[name];
        const MediaPlayerState before = player;
        MprisProperties::applyRoot(player, MprisProperties::map(reply.arguments().value(0)));
        if (!(player == before)) {
            announce();
        }
    });
    readPlayer(name);
}

void MprisMediaPlayers::removePlayer(const QString& name) {
    if (!m_players.remove(name)) {
        return;
    }
    m_order.removeAll(name);
    m_owners.remove(name);
    qCInfo(lcMedia, "player gone: %s", qUtf8Printable(name));
    announce();
}

void MprisMediaPlayers::readPlayer(const QString& name) {
    const QDBusMessage call = QDBusMessage::createMethodCall(name, objectPath, propertiesInterface,
                                                             QStringLiteral("GetAll"))
                              << playerInterface;
    whenAnswered(name, m_bus.asyncCall(call, timeoutMs()), [this, name](const QDBusMessage& reply) {
        MprisProperties::applyPlayer(
            m_players[name], MprisProperties::map(reply.arguments().value(0)), m_clock.now());
        announce();
    });
}

void MprisMediaPlayers::readPosition(const QString& name) {
    const QDBusMessage call =
        QDBusMessage::createMethodCall(name, objectPath, propertiesInterface, QStringLiteral("Get"))
        << playerInterface << QStringLiteral("Position");
    whenAnswered(name, m_bus.asyncCall(call, timeoutMs()), [this, name](const QDBusMessage& reply) {
        MediaPlayerState& player = m_players[name];
        if (!player.info.hasInfo()) {
            return;
        }
        MprisProperties::applyPlayer(
            player, {{QStringLiteral("Position"), reply.arguments().value(0)}}, m_clock.now());
        announce();
    });
}

void MprisMediaPlayers::whenAnswered(const QString& name, const QDBusPendingCall& call,
                                     std::function<void(const QDBusMessage&)> done) {
    auto* watcher = new QDBusPendingCallWatcher(call, this);
    const quint64 generation = m_generation;
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, name, generation, done = std::move(done)](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                // The player may have left, or been replaced by another owner, while asked.
                if (generation != m_generation || !m_players.contains(name)) {
                    return;
                }
                if (w->isError()) {
                    qCDebug(lcMedia, "%s did not answer: %s", qUtf8Printable(name),
                            qUtf8Printable(w->error().message()));
                    return;
                }
                done(w->reply());
            });
}

MediaPlayerState* MprisMediaPlayers::playerOwnedBy(const QString& owner) {
    for (const QString& name : std::as_const(m_order)) {
        if (m_owners.value(name) == owner) {
            return &m_players[name];
        }
    }
    return nullptr;
}

void MprisMediaPlayers::onPropertiesChanged(const QDBusMessage& message) {
    MediaPlayerState* player = playerOwnedBy(message.service());
    const QVariantList args = message.arguments();
    if (player == nullptr || args.size() < 2 || args.at(0).toString() != playerInterface) {
        return;
    }
    const QVariantMap changes = MprisProperties::map(args.at(1));
    const bool wasPlaying = player->info.isPlaying;
    const QString track = player->trackId + player->info.title;
    MprisProperties::applyPlayer(*player, changes, m_clock.now());
    // Players seldom announce their position: after a change of state or track it is asked for.
    if (!changes.contains(QStringLiteral("Position")) &&
        (wasPlaying != player->info.isPlaying || track != player->trackId + player->info.title) &&
        player->info.hasInfo()) {
        readPosition(player->source.id);
    }
    announce();
}

void MprisMediaPlayers::onSeeked(const QDBusMessage& message) {
    MediaPlayerState* player = playerOwnedBy(message.service());
    if (player == nullptr || message.arguments().isEmpty() || !player->info.hasInfo()) {
        return;
    }
    MprisProperties::applyPlayer(*player, {{QStringLiteral("Position"), message.arguments().at(0)}},
                                 m_clock.now());
    announce();
}

void MprisMediaPlayers::announce() {
    Q_EMIT changed();
}

} // namespace tw
