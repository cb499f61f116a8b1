// The password generator tiles on the desktop: a password made for each tile from the system's
// cryptographic source and held in memory only, copied marked as secret, made again on request or
// when the recipe changes; the tile's length and sets changed on the tile itself.
#pragma once

#include "model/TileBehaviour.h"
#include "platform/Clipboard.h"
#include "tools/CopiedFlash.h"
#include "tools/PasswordTile.h"
#include "tools/RandomPick.h"

#include <QHash>

namespace tw {

class GridStore;
class Scheduler;

class PasswordBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    PasswordBehaviour(GridStore& grid, Scheduler& scheduler, Clipboard& clipboard,
                      RandomSource source, QObject* parent = nullptr);

    void setTiles(const QList<BehaviourTile>& tiles) override;
    // "copy", "new", "shorter", "longer", "toggle:<lower|upper|digits|symbols|similar|mode>".
    bool press(const WidgetInstance& tile, const QString& command) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

    const PasswordTile* tile(const QUuid& id) const;

    // The settings a press of `command` writes on a tile with `settings`; empty for a command
    // that writes none, or one that would leave no character set.
    static WidgetSettings settingsFor(const QString& command, const WidgetSettings& settings);

private:
    PasswordTile& tileOf(const WidgetInstance& instance);
    void make(PasswordTile& tile, const PasswordRecipe& recipe);

    GridStore& m_grid;
    Clipboard& m_clipboard;
    RandomSource m_source;
    CopiedFlash m_copied;
    QHash<QUuid, PasswordTile> m_tiles;
};

} // namespace tw
