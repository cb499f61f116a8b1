#include "model/TileBehaviour.h"

namespace tw {

void TileBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    Q_UNUSED(tiles)
}

bool TileBehaviour::press(const WidgetInstance& tile, const QString& command) {
    Q_UNUSED(tile)
    Q_UNUSED(command)
    return false;
}

bool TileBehaviour::takesKeys() const {
    return false;
}

bool TileBehaviour::key(const WidgetInstance& tile, const Key& key) {
    Q_UNUSED(tile)
    Q_UNUSED(key)
    return false;
}

void TileBehaviour::focusChanged(const WidgetInstance& tile, bool focused) {
    Q_UNUSED(tile)
    Q_UNUSED(focused)
}

bool TileBehaviour::takesDrops() const {
    return false;
}

bool TileBehaviour::acceptsDrop(const WidgetInstance& tile, const QMimeData& data) const {
    Q_UNUSED(tile)
    Q_UNUSED(data)
    return false;
}

bool TileBehaviour::drop(const WidgetInstance& tile, const QMimeData& data) {
    Q_UNUSED(tile)
    Q_UNUSED(data)
    return false;
}

QList<TileBehaviour::MenuItem> TileBehaviour::menuItems(const WidgetInstance& tile) const {
    Q_UNUSED(tile)
    return {};
}

void TileBehaviours::add(const QString& kind, TileBehaviour* behaviour) {
    m_byKind.insert(kind, behaviour);
}

} // namespace tw
