#include "tools/CalculatorBehaviour.h"

#include "text/L.h"
#include "tools/AdoptSettings.h"

namespace tw {

namespace {

using Outcome = ToolInput::Outcome;

} // namespace

CalculatorBehaviour::CalculatorBehaviour(GridStore& grid, Scheduler& scheduler,
                                         Clipboard& clipboard, QObject* parent)
    : TileBehaviour(parent)
    , m_grid(grid)
    , m_clipboard(clipboard)
    , m_copied(scheduler, this, [this](const QUuid& id) {
        if (const auto found = m_tiles.find(id); found != m_tiles.end()) {
            found->copied = false;
            Q_EMIT changed(id);
        }
    }) {}

void CalculatorBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QHash<QUuid, CalculatorTile> kept;
    for (const BehaviourTile& tile : tiles) {
        const auto known = m_tiles.constFind(tile.instance.id);
        kept.insert(tile.instance.id, known != m_tiles.constEnd()
                                          ? *known
                                          : CalculatorTile::fromSettings(
                                                tile.instance.settings.value_or(WidgetSettings())));
    }
    for (auto it = m_tiles.cbegin(); it != m_tiles.cend(); ++it) {
        if (!kept.contains(it.key())) {
            m_copied.forget(it.key());
        }
    }
    m_tiles = kept;
}

CalculatorTile& CalculatorBehaviour::tileOf(const WidgetInstance& instance) {
    auto found = m_tiles.find(instance.id);
    if (found == m_tiles.end()) {
        found = m_tiles.insert(instance.id, CalculatorTile::fromSettings(
                                                instance.settings.value_or(WidgetSettings())));
    }
    return *found;
}

const CalculatorTile* CalculatorBehaviour::tile(const QUuid& id) const {
    const auto found = m_tiles.constFind(id);
    return found != m_tiles.constEnd() ? &*found : nullptr;
}

bool CalculatorBehaviour::apply(const WidgetInstance& instance, Outcome outcome) {
    CalculatorTile& tile = tileOf(instance);
    const int decimals = CalculatorTile::decimals(instance.settings.value_or(WidgetSettings()));
    switch (outcome) {
    case Outcome::ignored:
        return false;
    case Outcome::unchanged:
        return true;
    case Outcome::copy:
        m_clipboard.copyText(tile.state.copyText(decimals));
        tile.copied = true;
        m_copied.start(instance.id);
        break;
    case Outcome::paste:
        if (!tile.state.paste(m_clipboard.text())) {
            return true;
        }
        break;
    case Outcome::changed:
        tile.copied = false;
        break;
    }
    // A result joins the tape: keep it now, as a quit may follow.
    if (tile.state.evaluated) {
        keep(instance.id);
    }
    Q_EMIT changed(instance.id);
    return true;
}

bool CalculatorBehaviour::press(const WidgetInstance& tile, const QString& command) {
    if (command == QLatin1String("clearTape")) {
        tileOf(tile).state.tape.clear();
        keep(tile.id);
        Q_EMIT changed(tile.id);
        return true;
    }
    CalculatorState& state = tileOf(tile).state;
    const int decimals = CalculatorTile::decimals(tile.settings.value_or(WidgetSettings()));
    return apply(tile, ToolInput::calculatorCommand(state, command, decimals));
}

bool CalculatorBehaviour::key(const WidgetInstance& tile, const Key& key) {
    CalculatorState& state = tileOf(tile).state;
    const int decimals = CalculatorTile::decimals(tile.settings.value_or(WidgetSettings()));
    return apply(tile, ToolInput::calculatorKey(state, key.key, key.modifiers, key.text, decimals));
}

void CalculatorBehaviour::focusChanged(const WidgetInstance& tile, bool focused) {
    tileOf(tile).focused = focused;
    // The unfinished sum is kept when the person turns away, not at every key.
    if (!focused) {
        keep(tile.id);
    }
    Q_EMIT changed(tile.id);
}

QList<TileBehaviour::MenuItem> CalculatorBehaviour::menuItems(const WidgetInstance& tile) const {
    QList<MenuItem> items{
        {L("calculator.menu.copy", QStringLiteral("Copy Result")), QStringLiteral("copy")}};
    const CalculatorTile* shown = this->tile(tile.id);
    if (shown != nullptr && !shown->state.tape.isEmpty()) {
        items.append({L("calculator.menu.clearTape", QStringLiteral("Clear Tape")),
                      QStringLiteral("clearTape")});
    }
    return items;
}

void CalculatorBehaviour::keep(const QUuid& id) {
    const auto found = m_tiles.constFind(id);
    if (found == m_tiles.constEnd()) {
        return;
    }
    adoptSettings(m_grid, id,
                  {{QStringLiteral("tape"), CalcTape::toText(found->state.tape)},
                   {QStringLiteral("entry"), found->state.entry}});
}

} // namespace tw
