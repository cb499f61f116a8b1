// What one player says it plays, and where in the track it is: the progress between its words is
// extrapolated from `position` at `positionDate`, so no word is needed while it plays.
#pragma once

#include <QDateTime>
#include <QString>

namespace tw {

struct MediaNowPlayingInfo {
    QString title;
    QString artist;
    QString album;
    bool isPlaying = false;
    // Seconds; -1 if unknown.
    double duration = -1;
    // Seconds; -1 if unknown.
    double position = -1;
    // When `position` was true.
    QDateTime positionDate;

    bool operator==(const MediaNowPlayingInfo&) const = default;

    bool hasInfo() const { return !title.isEmpty(); }
    // Equal title and artist: the same song, whatever the position or state.
    bool isSameTrack(const MediaNowPlayingInfo& other) const;
    // Seconds into the track at `now`: counted on from `position` while playing (never back in
    // time), the bare position while paused, at most `duration` when that is known; 0 when the
    // position is unknown.
    double elapsed(const QDateTime& now) const;
    // `elapsed` over `duration`, 0...1; 0 when either is unknown.
    double progress(const QDateTime& now) const;
};

} // namespace tw
