#include "launch/ShortcutBehaviour.h"

#include "platform/Notifications.h"
#include "text/L.h"

#include <QFileInfo>
#include <QLoggingCategory>
#include <QMimeDatabase>

namespace tw {

Q_LOGGING_CATEGORY(lcShortcut, "Shortcut")

ShortcutBehaviour::ShortcutBehaviour(Workspace& workspace, Notifications& notifications,
                                     const AppDirectory& directory, QString home, QObject* parent)
    : TileBehaviour(parent)
    , m_workspace(workspace)
    , m_notifications(notifications)
    , m_directory(directory)
    , m_catalog(directory)
    , m_home(std::move(home)) {}

QString ShortcutBehaviour::symbolOf(Shortcut::Type type) {
    switch (type) {
    case Shortcut::Type::app:
        return QStringLiteral("square.grid.2x2.fill");
    case Shortcut::Type::url:
        return QStringLiteral("globe");
    case Shortcut::Type::file:
        return QStringLiteral("folder");
    case Shortcut::Type::command:
        return QStringLiteral("apple.terminal.fill");
    }
    return QStringLiteral("wand.and.rays");
}

ShortcutLook ShortcutBehaviour::lookOf(const Shortcut& shortcut) {
    ShortcutLook look{
        .title = {}, .iconFile = {}, .symbol = symbolOf(shortcut.type), .problem = {}};
    if (!shortcut.isSet()) {
        look.title = shortcut.name;
        look.symbol = QStringLiteral("wand.and.rays");
        return look;
    }
    switch (shortcut.type) {
    case Shortcut::Type::app:
        if (const std::optional<InstalledApp> app = m_catalog.app(shortcut.target)) {
            look.title = shortcut.title(app->name);
            look.iconFile = m_catalog.iconFile(*app);
        } else {
            look.title = shortcut.title(QString());
            look.problem = L("shortcut.appGone", QStringLiteral("Not installed"));
        }
        break;
    case Shortcut::Type::file: {
        look.title = shortcut.title(QString());
        const QFileInfo file(shortcut.path(m_home));
        if (!file.exists()) {
            look.problem = L("shortcut.fileGone", QStringLiteral("Not found"));
            break;
        }
        const QMimeType type = QMimeDatabase().mimeTypeForFile(file);
        look.iconFile = m_directory.iconFile(type.iconName());
        if (look.iconFile.isEmpty()) {
            look.iconFile = m_directory.iconFile(type.genericIconName());
        }
        break;
    }
    case Shortcut::Type::url:
    case Shortcut::Type::command:
        look.title = shortcut.title(QString());
        break;
    }
    return look;
}

void ShortcutBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QHash<QUuid, Shortcut> shortcuts;
    QHash<QUuid, ShortcutLook> looks;
    for (const BehaviourTile& tile : tiles) {
        const QUuid id = tile.instance.id;
        const Shortcut shortcut =
            Shortcut::fromSettings(tile.instance.settings.value_or(WidgetSettings()));
        shortcuts.insert(id, shortcut);
        if (m_shortcuts.contains(id) && m_shortcuts.value(id) == shortcut) {
            looks.insert(id, m_looks.value(id));
            continue;
        }
        looks.insert(id, lookOf(shortcut));
        Q_EMIT changed(id);
    }
    m_shortcuts = shortcuts;
    m_looks = looks;
}

bool ShortcutBehaviour::press(const WidgetInstance& tile, const QString& command) {
    Q_UNUSED(command)
    const auto found = m_shortcuts.constFind(tile.id);
    if (found == m_shortcuts.cend() || !found->isSet()) {
        return false;
    }
    const LaunchResult result = found->open(m_workspace, m_home);
    // A file found again, or gone since, shows so.
    const ShortcutLook look = lookOf(*found);
    if (look != m_looks.value(tile.id)) {
        m_looks.insert(tile.id, look);
        Q_EMIT changed(tile.id);
    }
    if (!result.isSuccess()) {
        qCWarning(lcShortcut, "not opened: %s", qUtf8Printable(result.error()));
        m_notifications.notify(
            L("shortcut.failed.title", QStringLiteral("“%1” did not open")).arg(look.title),
            look.problem.isEmpty()
                ? result.error()
                : L("shortcut.failed.gone",
                    QStringLiteral(
                        "It is no longer there. Choose it again in the tile's settings.")));
    }
    return true;
}

std::optional<ShortcutLook> ShortcutBehaviour::look(const QUuid& tile) const {
    const auto found = m_looks.constFind(tile);
    return found == m_looks.cend() ? std::nullopt : std::optional(*found);
}

} // namespace tw
