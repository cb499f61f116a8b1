// What the now-playing tile shows: the track of the player believed, its cover and the controls
// that player offers.
#pragma once

#include "platform/MediaPlayers.h"

#include <QByteArray>
#include <QDateTime>

namespace tw {

struct NowPlaying {
    // False when no player can be reached at all (no session bus).
    bool available = true;
    // Empty, and nothing playing, when no player has anything to show.
    MediaNowPlayingInfo info;
    // None when nothing plays.
    MediaPlayerSource source;
    // The cover as the player or the web gave it (an encoded picture); empty when there is none
    // (yet).
    QByteArray artwork;
    bool canPlay = false;
    bool canPause = false;
    bool canGoNext = false;
    bool canGoPrevious = false;
    // When the track shown last changed.
    QDateTime changedAt;

    bool operator==(const NowPlaying&) const = default;
};

} // namespace tw
