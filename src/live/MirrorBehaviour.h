// The mirror tiles on the desktop: the camera opened for the tile in view whose person allowed
// it, closed for every other. A click on a tile with a problem tries again.
#pragma once

#include "live/MirrorSession.h"
#include "model/TileBehaviour.h"

#include <QHash>

#include <functional>
#include <memory>

namespace tw {

class MirrorBehaviour : public TileBehaviour {
    Q_OBJECT

public:
    using FeedMaker = std::function<std::unique_ptr<CameraFeed>()>;

    MirrorBehaviour(FeedMaker makeFeed, const Clock& clock, std::function<qreal()> pixelRatio,
                    QObject* parent = nullptr);
    ~MirrorBehaviour() override;

    static inline const QString retryCommand = QStringLiteral("mirror.retry");
    // The person's switch: "allowed" is "true".
    static bool allowed(const WidgetSettings& settings);

    // The session of a tile; null for a tile never seen.
    const MirrorSession* session(const QUuid& tile) const;

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;

private:
    struct Tile {
        std::unique_ptr<CameraFeed> feed;
        std::unique_ptr<MirrorSession> session;
    };

    FeedMaker m_makeFeed;
    const Clock& m_clock;
    std::function<qreal()> m_pixelRatio;
    QHash<QUuid, std::shared_ptr<Tile>> m_tiles;
};

} // namespace tw
