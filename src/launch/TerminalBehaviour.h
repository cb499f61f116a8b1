// The terminal tiles on the desktop: their commands run by a `TerminalService` while in view;
// a click on the tile runs the command again.
#pragma once

#include "launch/TerminalService.h"
#include "model/TileBehaviour.h"

namespace tw {

class TerminalBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    TerminalBehaviour(Scheduler& scheduler, const Clock& clock, const QString& home,
                      QObject* parent = nullptr);

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

    // Null for a tile the desktop does not hold.
    const TerminalState* state(const QUuid& tile) const { return m_service.state(tile); }

    static QString runCommand() { return QStringLiteral("run"); }

private:
    TerminalService m_service;
};

} // namespace tw
