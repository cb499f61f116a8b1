// The apps tiles on the desktop: the applications each holds (the person's choice, else the
// desktop's own for a few everyday roles), started by a click on their icon.
#pragma once

#include "launch/AppCatalog.h"
#include "model/TileBehaviour.h"

#include <QHash>
#include <QList>

namespace tw {

class Notifications;
class Workspace;

// One application on an apps tile as its face draws it.
struct AppTileEntry {
    QString id;
    QString name;
    QString iconFile;
    // False for one chosen but no longer installed: drawn faint, a click says so.
    bool installed = true;

    bool operator==(const AppTileEntry&) const = default;
};

class AppsBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    AppsBehaviour(Workspace& workspace, Notifications& notifications, const AppDirectory& directory,
                  QObject* parent = nullptr);

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;

    // What the tile shows, in order; empty for a tile not known.
    QList<AppTileEntry> entries(const QUuid& tile) const { return m_entries.value(tile); }
    // Every application that may be chosen, by name, for the settings' picker.
    QList<InstalledApp> installed() { return m_catalog.all(); }

    // The command of an app's icon on the face.
    static QString commandFor(const QString& id) { return QStringLiteral("app:") + id; }

private:
    QStringList defaults();

    Workspace& m_workspace;
    Notifications& m_notifications;
    AppCatalog m_catalog;
    QHash<QUuid, QStringList> m_chosen;
    QHash<QUuid, QList<AppTileEntry>> m_entries;
    std::optional<QStringList> m_defaults;
};

} // namespace tw
