#include "launch/AppsBehaviour.h"

#include "launch/AppShelf.h"
#include "platform/Notifications.h"
#include "platform/Workspace.h"
#include "text/L.h"

#include <QFileInfo>
#include <QLoggingCategory>

namespace tw {

Q_LOGGING_CATEGORY(lcApps, "Apps")

AppsBehaviour::AppsBehaviour(Workspace& workspace, Notifications& notifications,
                             const AppDirectory& directory, QObject* parent)
    : TileBehaviour(parent)
    , m_workspace(workspace)
    , m_notifications(notifications)
    , m_catalog(directory) {}

QStringList AppsBehaviour::defaults() {
    if (!m_defaults) {
        // The person's own applications for everyday roles, as their desktop names them.
        m_defaults = QStringList();
        for (const AppRole role :
             {AppRole::fileManager, AppRole::terminal, AppRole::calendar, AppRole::musicPlayer,
              AppRole::photos, AppRole::systemMonitor, AppRole::settings}) {
            if (const std::optional<QString> location = m_workspace.applicationForRole(role)) {
                const QString id = QFileInfo(*location).completeBaseName();
                if (!id.isEmpty() && !m_defaults->contains(id) && m_catalog.app(id)) {
                    m_defaults->append(id);
                }
            }
        }
    }
    return *m_defaults;
}

void AppsBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QHash<QUuid, QList<AppTileEntry>> entries;
    for (const BehaviourTile& tile : tiles) {
        QStringList ids = AppShelf::read(tile.instance.settings.value_or(WidgetSettings()));
        if (ids.isEmpty()) {
            ids = defaults();
        }
        // Unchanged tiles keep what was looked up.
        if (m_chosen.value(tile.instance.id) == ids && m_entries.contains(tile.instance.id)) {
            entries.insert(tile.instance.id, m_entries.value(tile.instance.id));
            continue;
        }
        m_chosen.insert(tile.instance.id, ids);
        QList<AppTileEntry> shown;
        for (const QString& id : ids) {
            const std::optional<InstalledApp> app = m_catalog.app(id);
            shown.append(app ? AppTileEntry{app->id, app->name, m_catalog.iconFile(*app), true}
                             : AppTileEntry{id, id, QString(), false});
        }
        entries.insert(tile.instance.id, shown);
        Q_EMIT changed(tile.instance.id);
    }
    for (auto it = m_chosen.begin(); it != m_chosen.end();) {
        it = entries.contains(it.key()) ? std::next(it) : m_chosen.erase(it);
    }
    m_entries = entries;
}

bool AppsBehaviour::press(const WidgetInstance& tile, const QString& command) {
    Q_UNUSED(tile)
    const QString prefix = commandFor(QString());
    if (!command.startsWith(prefix)) {
        return false;
    }
    const QString id = command.mid(prefix.size());
    const std::optional<QString> location = m_workspace.applicationForIdentifier(id);
    const LaunchResult result =
        location ? m_workspace.openApplication(*location)
                 : LaunchResult::failure(id + QLatin1String(" is not installed"));
    if (!result.isSuccess()) {
        qCWarning(lcApps, "not started: %s", qUtf8Printable(result.error()));
        m_notifications.notify(
            L("apps.failed.title", QStringLiteral("The app did not start")),
            location ? L("apps.failed.body", QStringLiteral("%1 could not be started.")).arg(id)
                     : L("apps.missing.body",
                         QStringLiteral("%1 is no longer installed. Choose the tile's apps again "
                                        "in its settings."))
                           .arg(id));
    }
    return true;
}

} // namespace tw
