// Which of the session's players the tile believes, and its cover: the player that plays and
// last changed wins; a "playing" nobody has confirmed for longer than the track had left (plus
// five minutes) is not believed; a player silent for an hour and a half is forgotten. Covers come
// from the player's address (a file, or the web through the HTTP layer), size-capped, one
// attempt per track, the last eight kept.
#pragma once

#include "platform/MediaPlayers.h"
#include "readings/NowPlaying.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>

#include <chrono>
#include <optional>

namespace tw {

class Clock;
class HttpClient;
class SampleRunner;

class MediaNowPlayingService final : public QObject {
    Q_OBJECT
public:
    static constexpr std::chrono::seconds forgetAfter{5400};
    static constexpr std::chrono::seconds staleGrace{300};
    // Players do not announce their position; while watched they are asked this often.
    static constexpr std::chrono::seconds refreshInterval{60};
    static constexpr qsizetype artCacheSize = 8;
    static constexpr qint64 maxArtBytes = 4 * 1024 * 1024;
    static constexpr std::chrono::milliseconds artTimeout{10'000};

    // The player to show among `players` at `now`, its "playing" corrected when stale; none when
    // no player has anything to show. A player named `preferred` wins while it has something.
    static std::optional<MediaPlayerState> decide(const QList<MediaPlayerState>& players,
                                                  const QDateTime& now,
                                                  const QString& preferred = {});

    // Everything given must outlive this; `runner` reads cover files away from the main thread.
    MediaNowPlayingService(MediaPlayers& players, HttpClient& http, SampleRunner& runner,
                           const Clock& clock, QObject* parent = nullptr);

    // Players are followed only while a tile shows them.
    void setActive(bool active);
    bool isActive() const { return m_active; }
    // Asks the players now.
    void refresh();
    // On each tick while active: asks the players once a refresh interval, and lets a stale
    // "playing" lapse.
    void refreshIfDue(const QDateTime& now);
    // The tile's buttons, for the player shown.
    void send(MediaCommand command);
    // The name of the player the person prefers, from the music tile's settings; empty for none.
    void setPreferred(const QString& name);

    const NowPlaying& nowPlaying() const { return m_current; }

Q_SIGNALS:
    void changed();

private:
    void recompute();
    void publish(NowPlaying next);
    void fetchArtwork(const QString& key, const QUrl& url);
    void artworkArrived(const QString& key, const QByteArray& bytes);

    MediaPlayers& m_players;
    HttpClient& m_http;
    SampleRunner& m_runner;
    const Clock& m_clock;
    bool m_active = false;
    QString m_preferred;
    QDateTime m_lastRefresh;
    NowPlaying m_current;
    // The art key of the track shown.
    QString m_currentKey;
    QHash<QString, QByteArray> m_artCache;
    QStringList m_artCacheOrder;
    QSet<QString> m_artAttempted;
};

} // namespace tw
