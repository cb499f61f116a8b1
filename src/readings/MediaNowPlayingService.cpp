#include "readings/MediaNowPlayingService.h"

#include "net/HttpClient.h"
#include "platform/Clock.h"
#include "readings/SampleRunner.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcNowPlaying, "NowPlaying")

namespace tw {

namespace {

qint64 secondsBetween(const QDateTime& from, const QDateTime& to) {
    return from.isValid() && to.isValid() ? from.secsTo(to) : 0;
}

// A cover file: a regular file of at most the cap, never a FIFO or a device that would block.
QByteArray readArtFile(const QString& path) {
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > MediaNowPlayingService::maxArtBytes) {
        return {};
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return file.read(MediaNowPlayingService::maxArtBytes);
}

QString artKey(const MediaPlayerState& player) {
    return QStringList{player.source.id, player.info.title, player.info.artist,
                       player.artUrl.toString()}
        .join(QLatin1Char('|'));
}

} // namespace

std::optional<MediaPlayerState>
MediaNowPlayingService::decide(const QList<MediaPlayerState>& players, const QDateTime& now,
                               const QString& preferred) {
    QList<MediaPlayerState> candidates;
    for (MediaPlayerState player : players) {
        const qint64 age = secondsBetween(player.heardAt, now);
        if (!player.info.hasInfo() || age > forgetAfter.count()) {
            continue;
        }
        MediaNowPlayingInfo& info = player.info;
        if (info.isPlaying) {
            const bool knowsLeft =
                info.duration > 0 && info.position >= 0 && info.position <= info.duration;
            const double left = knowsLeft ? info.duration - info.position : 0;
            if (static_cast<double>(age) > left + static_cast<double>(staleGrace.count())) {
                info.position = info.position >= 0 ? info.elapsed(now) : info.position;
                info.positionDate = now;
                info.isPlaying = false;
            }
        }
        if (!preferred.isEmpty() && player.source.name == preferred) {
            return player;
        }
        candidates << player;
    }
    QList<MediaPlayerState> playing;
    for (const MediaPlayerState& c : std::as_const(candidates)) {
        if (c.info.isPlaying) {
            playing << c;
        }
    }
    const QList<MediaPlayerState>& pool = playing.isEmpty() ? candidates : playing;
    std::optional<MediaPlayerState> winner;
    for (const MediaPlayerState& c : pool) {
        // The first of equal dates stands.
        if (!winner || c.changedAt > winner->changedAt) {
            winner = c;
        }
    }
    return winner;
}

MediaNowPlayingService::MediaNowPlayingService(MediaPlayers& players, HttpClient& http,
                                               SampleRunner& runner, const Clock& clock,
                                               QObject* parent)
    : QObject(parent)
    , m_players(players)
    , m_http(http)
    , m_runner(runner)
    , m_clock(clock) {
    m_current.available = m_players.available();
    connect(&m_players, &MediaPlayers::changed, this, &MediaNowPlayingService::recompute);
}

void MediaNowPlayingService::setActive(bool active) {
    if (active == m_active) {
        return;
    }
    m_active = active;
    m_lastRefresh = active ? m_clock.now() : QDateTime();
    m_players.setWatching(active);
    recompute();
}

void MediaNowPlayingService::refresh() {
    m_lastRefresh = m_clock.now();
    m_players.refresh();
}

void MediaNowPlayingService::refreshIfDue(const QDateTime& now) {
    if (!m_active) {
        return;
    }
    if (!m_lastRefresh.isValid() || secondsBetween(m_lastRefresh, now) >= refreshInterval.count()) {
        refresh();
    }
    recompute();
}

void MediaNowPlayingService::setPreferred(const QString& name) {
    if (name != m_preferred) {
        m_preferred = name;
        if (m_active) {
            recompute();
        }
    }
}

void MediaNowPlayingService::send(MediaCommand command) {
    if (m_current.source.isNone()) {
        qCInfo(lcNowPlaying, "transport command %d dropped: nothing is playing",
               static_cast<int>(command));
        return;
    }
    m_players.send(m_current.source.id, command);
}

void MediaNowPlayingService::recompute() {
    NowPlaying next;
    next.available = m_players.available();
    const std::optional<MediaPlayerState> winner =
        decide(m_players.players(), m_clock.now(), m_preferred);
    if (!winner) {
        m_currentKey.clear();
        next.changedAt = m_current.changedAt;
        publish(next);
        return;
    }
    next.info = winner->info;
    next.source = winner->source;
    next.canPlay = winner->canPlay;
    next.canPause = winner->canPause;
    next.canGoNext = winner->canGoNext;
    next.canGoPrevious = winner->canGoPrevious;
    next.changedAt = m_current.changedAt;
    m_currentKey = artKey(*winner);
    const auto cached = m_artCache.constFind(m_currentKey);
    if (cached != m_artCache.cend()) {
        next.artwork = *cached;
    }
    publish(next);
    // After publishing: a cover that is read at once lands on the track just published.
    if (cached == m_artCache.cend() && !winner->artUrl.isEmpty()) {
        fetchArtwork(m_currentKey, winner->artUrl);
    }
}

void MediaNowPlayingService::publish(NowPlaying next) {
    if (!next.info.isSameTrack(m_current.info) || !(next.source == m_current.source)) {
        next.changedAt = m_clock.now();
    }
    if (!(next.source == m_current.source)) {
        qCInfo(lcNowPlaying, "now playing from %s",
               next.source.isNone() ? "nothing" : qUtf8Printable(next.source.name));
    }
    if (next == m_current) {
        return;
    }
    m_current = std::move(next);
    Q_EMIT changed();
}

void MediaNowPlayingService::fetchArtwork(const QString& key, const QUrl& url) {
    if (m_artAttempted.contains(key)) {
        return;
    }
    m_artAttempted.insert(key);
    if (url.isLocalFile()) {
        runSample(
            m_runner, this, [path = url.toLocalFile()] { return readArtFile(path); },
            [this, key](const QByteArray& bytes) { artworkArrived(key, bytes); });
        return;
    }
    HttpRequest request{.url = url,
                        .headers = {{"Accept", "image/*"}},
                        .timeout = artTimeout,
                        .maxBytes = maxArtBytes};
    m_http.get(request, this, [this, key](const HttpResponse& response) {
        if (!response.isSuccess()) {
            qCInfo(lcNowPlaying, "no cover: %s", qUtf8Printable(response.message));
            return;
        }
        artworkArrived(key, response.body);
    });
}

void MediaNowPlayingService::artworkArrived(const QString& key, const QByteArray& bytes) {
    if (bytes.isEmpty()) {
        return;
    }
    m_artCache.insert(key, bytes);
    m_artCacheOrder.removeAll(key);
    m_artCacheOrder << key;
    while (m_artCacheOrder.size() > artCacheSize) {
        m_artCache.remove(m_artCacheOrder.takeFirst());
    }
    if (key == m_currentKey) {
        NowPlaying next = m_current;
        next.artwork = bytes;
        publish(next);
    }
}

} // namespace tw
