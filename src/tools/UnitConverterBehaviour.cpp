#include "tools/UnitConverterBehaviour.h"

#include "text/L.h"
#include "tools/AdoptSettings.h"

namespace tw {

namespace {

using Outcome = ToolInput::Outcome;

ConverterTile fromInstance(const WidgetInstance& instance) {
    return {ConverterState::fromSettings(instance.settings.value_or(WidgetSettings())), false,
            false};
}

} // namespace

UnitConverterBehaviour::UnitConverterBehaviour(GridStore& grid, Scheduler& scheduler,
                                               Clipboard& clipboard,
                                               std::function<const CurrencyBoard*()> rates,
                                               QObject* parent)
    : TileBehaviour(parent)
    , m_grid(grid)
    , m_clipboard(clipboard)
    , m_rates(std::move(rates))
    , m_copied(scheduler, this, [this](const QUuid& id) {
        if (const auto found = m_tiles.find(id); found != m_tiles.end()) {
            found->copied = false;
            Q_EMIT changed(id);
        }
    }) {}

void UnitConverterBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QHash<QUuid, ConverterTile> kept;
    for (const BehaviourTile& tile : tiles) {
        const auto known = m_tiles.constFind(tile.instance.id);
        ConverterTile shown = fromInstance(tile.instance);
        if (known != m_tiles.constEnd()) {
            // Settings changed elsewhere (an undo, a layout) win over the kept choices; what is
            // being typed stays.
            const ConverterState& mine = known->state;
            shown.focused = known->focused;
            shown.copied = known->copied;
            if (shown.state.category == mine.category && shown.state.from == mine.from &&
                shown.state.to == mine.to) {
                shown.state = mine;
            }
        }
        kept.insert(tile.instance.id, shown);
    }
    for (auto it = m_tiles.cbegin(); it != m_tiles.cend(); ++it) {
        if (!kept.contains(it.key())) {
            m_copied.forget(it.key());
        }
    }
    m_tiles = kept;
}

ConverterTile& UnitConverterBehaviour::tileOf(const WidgetInstance& instance) {
    auto found = m_tiles.find(instance.id);
    if (found == m_tiles.end()) {
        found = m_tiles.insert(instance.id, fromInstance(instance));
    }
    return *found;
}

const ConverterTile* UnitConverterBehaviour::tile(const QUuid& id) const {
    const auto found = m_tiles.constFind(id);
    return found != m_tiles.constEnd() ? &*found : nullptr;
}

bool UnitConverterBehaviour::apply(const WidgetInstance& instance, const ConverterState& before,
                                   Outcome outcome) {
    ConverterTile& tile = tileOf(instance);
    switch (outcome) {
    case Outcome::ignored:
        return false;
    case Outcome::unchanged:
        return true;
    case Outcome::copy: {
        const std::optional<double> result = tile.state.result(m_rates ? m_rates() : nullptr);
        if (!result) {
            return true;
        }
        m_clipboard.copyText(ConverterTile::resultText(tile.state, *result));
        tile.copied = true;
        m_copied.start(instance.id);
        break;
    }
    case Outcome::paste: {
        const QString text = m_clipboard.text().trimmed();
        tile.state.fresh = true;
        bool typed = false;
        for (const QChar c : text.left(ConverterState::maxAmount)) {
            typed = tile.state.type(c) || typed;
        }
        if (!typed) {
            return true;
        }
        break;
    }
    case Outcome::changed:
        tile.copied = false;
        break;
    }
    // Units and categories are kept at once; an amount when typing stops (focus leaves).
    if (tile.state.category != before.category || tile.state.from != before.from ||
        tile.state.to != before.to) {
        keep(instance.id);
    }
    Q_EMIT changed(instance.id);
    return true;
}

bool UnitConverterBehaviour::press(const WidgetInstance& tile, const QString& command) {
    ConverterState& state = tileOf(tile).state;
    const ConverterState before = state;
    return apply(tile, before, ToolInput::converterCommand(state, command));
}

bool UnitConverterBehaviour::key(const WidgetInstance& tile, const Key& key) {
    ConverterState& state = tileOf(tile).state;
    const ConverterState before = state;
    return apply(tile, before, ToolInput::converterKey(state, key.key, key.modifiers, key.text));
}

void UnitConverterBehaviour::focusChanged(const WidgetInstance& tile, bool focused) {
    ConverterTile& shown = tileOf(tile);
    shown.focused = focused;
    if (!focused) {
        shown.state.picking = ConverterState::Picking::none;
        keep(tile.id);
    }
    Q_EMIT changed(tile.id);
}

QList<TileBehaviour::MenuItem> UnitConverterBehaviour::menuItems(const WidgetInstance&) const {
    return {{L("convert.menu.copy", QStringLiteral("Copy Result")), QStringLiteral("copy")},
            {L("convert.menu.swap", QStringLiteral("Swap Units")), QStringLiteral("swap")},
            {L("convert.menu.category", QStringLiteral("Convert Something Else…")),
             QStringLiteral("pick:category")}};
}

void UnitConverterBehaviour::keep(const QUuid& id) {
    const auto found = m_tiles.constFind(id);
    if (found != m_tiles.constEnd()) {
        adoptSettings(m_grid, id, found->state.toSettings());
    }
}

} // namespace tw
