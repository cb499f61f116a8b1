// The calculator tiles on the desktop: keys typed and clicked, the copy of a result, the tape and
// an unfinished sum kept in each tile's settings so that they outlast a quit.
#pragma once

#include "model/TileBehaviour.h"
#include "platform/Clipboard.h"
#include "tools/CalculatorTile.h"
#include "tools/CopiedFlash.h"
#include "tools/ToolInput.h"

#include <QHash>

namespace tw {

class GridStore;
class Scheduler;

class CalculatorBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    CalculatorBehaviour(GridStore& grid, Scheduler& scheduler, Clipboard& clipboard,
                        QObject* parent = nullptr);

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;
    bool takesKeys() const override { return true; }
    bool key(const WidgetInstance& tile, const Key& key) override;
    void focusChanged(const WidgetInstance& tile, bool focused) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

    // The tile as it shows now; null for one the desktop has not handed over.
    const CalculatorTile* tile(const QUuid& id) const;

private:
    CalculatorTile& tileOf(const WidgetInstance& instance);
    bool apply(const WidgetInstance& instance, ToolInput::Outcome outcome);
    void keep(const QUuid& id);

    GridStore& m_grid;
    Clipboard& m_clipboard;
    CopiedFlash m_copied;
    QHash<QUuid, CalculatorTile> m_tiles;
};

} // namespace tw
