// What the clipboard tile does on the desktop: a click on a clipping copies it back, the clear
// button empties the history; the tile's settings say whether the history is kept on disk and
// whether pictures are taken.
#pragma once

#include "model/TileBehaviour.h"

namespace tw {

class ClipboardService;

class ClipboardBehaviour final : public TileBehaviour {
    Q_OBJECT

public:
    explicit ClipboardBehaviour(ClipboardService& service, QObject* parent = nullptr);

    const ClipboardService& service() const { return m_service; }

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

private:
    ClipboardService& m_service;
};

} // namespace tw
