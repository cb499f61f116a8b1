#include "live/MirrorBehaviour.h"

#include <QSet>

namespace tw {

MirrorBehaviour::MirrorBehaviour(FeedMaker makeFeed, const Clock& clock,
                                 std::function<qreal()> pixelRatio, QObject* parent)
    : TileBehaviour(parent)
    , m_makeFeed(std::move(makeFeed))
    , m_clock(clock)
    , m_pixelRatio(std::move(pixelRatio)) {}

MirrorBehaviour::~MirrorBehaviour() = default;

bool MirrorBehaviour::allowed(const WidgetSettings& settings) {
    return settings.value(QStringLiteral("allowed")) == QLatin1String("true");
}

const MirrorSession* MirrorBehaviour::session(const QUuid& tile) const {
    const std::shared_ptr<Tile> found = m_tiles.value(tile);
    return found ? found->session.get() : nullptr;
}

void MirrorBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QSet<QUuid> present;
    for (const BehaviourTile& tile : tiles) {
        const QUuid id = tile.instance.id;
        present.insert(id);
        std::shared_ptr<Tile>& entry = m_tiles[id];
        if (!entry) {
            entry = std::make_shared<Tile>();
            entry->feed = m_makeFeed();
            entry->session = std::make_unique<MirrorSession>(*entry->feed, m_clock);
            connect(entry->session.get(), &MirrorSession::changed, this,
                    [this, id] { Q_EMIT changed(id); });
        }
        const QSize pixels = (tile.instance.pixelSize() * m_pixelRatio()).toSize();
        entry->session->update(allowed(tile.instance.settings.value_or(WidgetSettings{})),
                               tile.inView, pixels);
    }
    // A tile removed closes its camera with it.
    for (auto it = m_tiles.begin(); it != m_tiles.end();) {
        it = present.contains(it.key()) ? std::next(it) : m_tiles.erase(it);
    }
}

bool MirrorBehaviour::press(const WidgetInstance& tile, const QString& command) {
    const std::shared_ptr<Tile> entry = m_tiles.value(tile.id);
    if (!entry || command != retryCommand) {
        return false;
    }
    entry->session->retry();
    return true;
}

} // namespace tw
