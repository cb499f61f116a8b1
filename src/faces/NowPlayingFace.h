// What the session's players play: the cover, title, artist, the progress counted on between
// the player's words, and the transport buttons the player offers; honest states when nothing
// plays or no player can be reached, and sample tracks marked "Demo" in manual mode.
#pragma once

#include "faces/WidgetFace.h"
#include "platform/MediaPlayers.h"
#include "readings/NowPlaying.h"

#include <QString>

namespace tw {

class NowPlayingFace final : public WidgetFace {
public:
    // Where the parts of one size go, in the rect paint is given; an empty rect is a part the
    // size leaves out.
    struct Layout {
        QRectF cover;
        QRectF source;
        QRectF title;
        QRectF artist;
        QRectF album;
        QRectF bar;
        QRectF elapsed;
        QRectF previous;
        QRectF playPause;
        QRectF next;
    };
    static Layout layout(WidgetSize size, const QRectF& rect);

    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    ReadingFeeds feeds(WidgetSize size, const WidgetSettings& settings) const override;
    QRectF changedRect(const QRectF& rect, const FaceContext& context, const QDateTime& before,
                       const QDateTime& after) const override;
    // The button under the pointer, with its name for help.
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // The button at `point` (in the coordinates of `rect` as given to paint) that the track
    // shown offers; none elsewhere, in manual mode and when nothing plays.
    static std::optional<MediaCommand> commandAt(const QRectF& rect, QPointF point,
                                                 const FaceContext& context);
    // The track the face shows: the player's, or a sample one in manual mode and in the
    // gallery's previews while nothing plays; none for a notice.
    static std::optional<NowPlaying> shown(const FaceContext& context);
    // Whether what `shown` gives is a sample track.
    static bool isDemo(const FaceContext& context);
    // "3:07", "1:02:03".
    static QString clockText(double seconds);
};

} // namespace tw
