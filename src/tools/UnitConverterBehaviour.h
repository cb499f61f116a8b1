// The unit converter tiles on the desktop: amounts typed and clicked, units and categories chosen
// on the tile, the copy of a result; each tile's choices kept in its settings.
#pragma once

#include "market/MarketBoard.h"
#include "model/TileBehaviour.h"
#include "platform/Clipboard.h"
#include "tools/ConverterTile.h"
#include "tools/CopiedFlash.h"
#include "tools/ToolInput.h"

#include <QHash>

#include <functional>

namespace tw {

class GridStore;
class Scheduler;

class UnitConverterBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    // `rates`: the currency rates of the moment, or null where there are none.
    UnitConverterBehaviour(GridStore& grid, Scheduler& scheduler, Clipboard& clipboard,
                           std::function<const CurrencyBoard*()> rates, QObject* parent = nullptr);

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;
    bool takesKeys() const override { return true; }
    bool key(const WidgetInstance& tile, const Key& key) override;
    void focusChanged(const WidgetInstance& tile, bool focused) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

    const ConverterTile* tile(const QUuid& id) const;

private:
    ConverterTile& tileOf(const WidgetInstance& instance);
    bool apply(const WidgetInstance& instance, const ConverterState& before,
               ToolInput::Outcome outcome);
    void keep(const QUuid& id);

    GridStore& m_grid;
    Clipboard& m_clipboard;
    std::function<const CurrencyBoard*()> m_rates;
    CopiedFlash m_copied;
    QHash<QUuid, ConverterTile> m_tiles;
};

} // namespace tw
