// The ambient sound tile on the desktop: its settings drive the one AmbientSoundService, its
// buttons play and pause, pick a sound, change the volume and the sleep timer. The sound goes on
// while the tile is covered (it is heard, not seen) and stops when the tile is removed.
#pragma once

#include "ambient/AmbientSoundService.h"
#include "model/TileBehaviour.h"

#include <QUuid>

namespace tw {

class GridStore;

class AmbientSoundBehaviour : public TileBehaviour {
    Q_OBJECT
public:
    AmbientSoundBehaviour(AmbientSoundService& service, GridStore& grid, QObject* parent = nullptr);

    const AmbientSoundService& service() const { return m_service; }

    void setTiles(const QList<BehaviourTile>& tiles) override;
    // "toggle", "sound:<name>", "louder", "quieter" and "sleep" (the next length).
    bool press(const WidgetInstance& tile, const QString& command) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

private:
    AmbientSoundService& m_service;
    GridStore& m_grid;
    QUuid m_tile;
};

} // namespace tw
