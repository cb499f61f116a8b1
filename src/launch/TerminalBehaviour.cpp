#include "launch/TerminalBehaviour.h"

#include "text/L.h"

namespace tw {

TerminalBehaviour::TerminalBehaviour(Scheduler& scheduler, const Clock& clock, const QString& home,
                                     QObject* parent)
    : TileBehaviour(parent)
    , m_service(scheduler, clock, home) {
    connect(&m_service, &TerminalService::changed, this, &TileBehaviour::changed);
}

void TerminalBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QList<TerminalService::Tile> terminals;
    for (const BehaviourTile& tile : tiles) {
        terminals.append(
            {tile.instance.id,
             TerminalSettings::fromSettings(tile.instance.settings.value_or(WidgetSettings())),
             tile.inView});
    }
    m_service.setTiles(terminals);
}

bool TerminalBehaviour::press(const WidgetInstance& tile, const QString& command) {
    Q_UNUSED(command)
    const TerminalState* state = m_service.state(tile.id);
    if (state == nullptr || !state->problem.isEmpty()) {
        return false;
    }
    m_service.runNow(tile.id);
    return true;
}

QList<TileBehaviour::MenuItem> TerminalBehaviour::menuItems(const WidgetInstance& tile) const {
    const TerminalState* state = m_service.state(tile.id);
    if (state == nullptr || !state->problem.isEmpty()) {
        return {};
    }
    return {{L("terminal.runNow", QStringLiteral("Run Now")), runCommand()}};
}

} // namespace tw
