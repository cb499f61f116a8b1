// Reading the properties MPRIS players publish on the session bus, leniently: a player that
// sends the wrong types, huge strings or nonsense numbers gives blanks, never a crash.
#pragma once

#include "platform/MediaPlayers.h"

#include <QString>
#include <QUrl>
#include <QVariant>
#include <QVariantMap>

namespace tw {

class MprisProperties {
public:
    // Longer texts are cut: a title is for one or two lines.
    static constexpr qsizetype maxTextLength = 512;
    static constexpr qsizetype maxUrlLength = 4096;

    struct Metadata {
        QString title;
        // Every artist named, joined with ", ".
        QString artist;
        QString album;
        QString trackId;
        // Seconds; -1 if unknown.
        double duration = -1;
        // Only a file, http or https address.
        QUrl artUrl;

        bool operator==(const Metadata&) const = default;
    };

    // The "Metadata" property as it arrives: a map, or the bus's own a{sv} argument; anything
    // else is no metadata.
    static Metadata metadata(const QVariant& value);
    // An a{sv} as the bus gives it (a map, or an argument still to be read) as a map; empty for
    // anything else.
    static QVariantMap map(const QVariant& value);
    // Microseconds of the "Position" property or the Seeked signal as seconds; -1 for anything
    // that is not a plausible time.
    static double seconds(const QVariant& microseconds);

    // Takes what org.mpris.MediaPlayer2.Player says (GetAll or PropertiesChanged) into `state`
    // at `now`: the position is carried over a change of state or track as well as can be told
    // without asking, a "Stopped" player has nothing to show, and `changedAt` moves only when
    // something a person sees changed.
    static void applyPlayer(MediaPlayerState& state, const QVariantMap& properties,
                            const QDateTime& now);
    // Identity and DesktopEntry of org.mpris.MediaPlayer2.
    static void applyRoot(MediaPlayerState& state, const QVariantMap& properties);
};

} // namespace tw
