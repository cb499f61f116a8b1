// The shortcut tiles on the desktop: a click opens what each names; each shows its title and
// its icon (the app's, the file type's, or a symbol for an address or a command).
#pragma once

#include "launch/AppCatalog.h"
#include "launch/Shortcut.h"
#include "model/TileBehaviour.h"

#include <QHash>

namespace tw {

class Notifications;
class Workspace;

struct ShortcutLook {
    QString title;
    // A picture file; empty to draw `symbol`.
    QString iconFile;
    QString symbol;
    // Why it cannot open (an app gone, a file moved); empty when all is well.
    QString problem;

    bool operator==(const ShortcutLook&) const = default;
};

class ShortcutBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    // `home`: where "~" leads and commands start.
    ShortcutBehaviour(Workspace& workspace, Notifications& notifications,
                      const AppDirectory& directory, QString home, QObject* parent = nullptr);

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;

    // Nullopt for a tile not known.
    std::optional<ShortcutLook> look(const QUuid& tile) const;

    // The symbol of each type, for faces drawing one without a behaviour.
    static QString symbolOf(Shortcut::Type type);

private:
    ShortcutLook lookOf(const Shortcut& shortcut);

    Workspace& m_workspace;
    Notifications& m_notifications;
    const AppDirectory& m_directory;
    AppCatalog m_catalog;
    QString m_home;
    QHash<QUuid, Shortcut> m_shortcuts;
    QHash<QUuid, ShortcutLook> m_looks;
};

} // namespace tw
