// The media players of the session: what each plays, as last told, and their transport controls.
#pragma once

#include "platform/MediaNowPlayingInfo.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

namespace tw {

// The transport commands of the tile's three buttons, numbered as the players' own remote
// protocols number them.
enum class MediaCommand { playPause = 2, nextTrack = 4, previousTrack = 5 };

// Which player a reading came from; an empty id is none at all.
struct MediaPlayerSource {
    // Unique among the players present (on Linux its bus name).
    QString id;
    // For a person: "Spotify", "VLC media player".
    QString name;
    // Its desktop entry's id without ".desktop", where it says.
    QString desktopEntry;

    bool operator==(const MediaPlayerSource&) const = default;
    bool isNone() const { return id.isEmpty(); }
};

struct MediaPlayerState {
    MediaPlayerSource source;
    MediaNowPlayingInfo info;
    // The cover, only a file, http or https address; empty when the player gives none.
    QUrl artUrl;
    // The player's own name for the track, to tell a new track from a repeated one.
    QString trackId;
    bool canPlay = false;
    bool canPause = false;
    bool canGoNext = false;
    bool canGoPrevious = false;
    // When the track, its state or its cover last changed: the latest change wins the tile.
    QDateTime changedAt;
    // When the player last said anything: a "playing" nobody confirms goes stale from here.
    QDateTime heardAt;

    bool operator==(const MediaPlayerState&) const = default;
};

class MediaPlayers : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // False when the players cannot be reached at all (no session bus).
    virtual bool available() const = 0;
    // Players are followed only while someone watches; stopping forgets them.
    virtual void setWatching(bool watching) = 0;
    // The players present, in the order they appeared; never waits.
    virtual QList<MediaPlayerState> players() const = 0;
    // Asks every player again (positions are not announced); the answers come as `changed`.
    virtual void refresh() = 0;
    // Sends a command to one player without waiting; a player that is gone ignores it.
    virtual void send(const QString& playerId, MediaCommand command) = 0;

Q_SIGNALS:
    void changed();
};

} // namespace tw
