#include "workspace/ClipboardBehaviour.h"

#include "text/L.h"
#include "workspace/ClipboardService.h"

namespace tw {

ClipboardBehaviour::ClipboardBehaviour(ClipboardService& service, QObject* parent)
    : TileBehaviour(parent)
    , m_service(service) {
    connect(&m_service, &ClipboardService::changed, this, [this] { Q_EMIT changed(QUuid()); });
}

void ClipboardBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    bool keep = false;
    bool images = true;
    for (const BehaviourTile& tile : tiles) {
        keep = keep || tile.instance.setting(QStringLiteral("keep")) == QLatin1String("true");
        images =
            images && tile.instance.setting(QStringLiteral("images")) != QLatin1String("false");
    }
    // The history watches while a tile is on the desktop, in view or not: copies made while
    // it is covered belong in it too.
    m_service.setWatching(!tiles.isEmpty());
    m_service.setImages(images ? ClipboardHistory::Images::kept
                               : ClipboardHistory::Images::skipped);
    if (!tiles.isEmpty()) {
        m_service.setKeeping(keep);
    }
}

bool ClipboardBehaviour::press(const WidgetInstance&, const QString& command) {
    if (command == QLatin1String("clear")) {
        m_service.clear();
        return true;
    }
    if (command.startsWith(QLatin1String("copy:"))) {
        bool ok = false;
        const int index = command.mid(5).toInt(&ok);
        return ok && m_service.copyBack(index);
    }
    return false;
}

QList<TileBehaviour::MenuItem> ClipboardBehaviour::menuItems(const WidgetInstance&) const {
    if (m_service.items().isEmpty()) {
        return {};
    }
    return {{L("clipboard.clear", QStringLiteral("Clear History")), QStringLiteral("clear")}};
}

} // namespace tw
