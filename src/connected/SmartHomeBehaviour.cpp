#include "connected/SmartHomeBehaviour.h"

#include "platform/SecretStore.h"
#include "text/L.h"

namespace tw {

SmartHomeBehaviour::SmartHomeBehaviour(SmartHomeService& service, SecretStore& secrets,
                                       QObject* parent)
    : TileBehaviour(parent)
    , m_service(service)
    , m_secrets(secrets) {
    connect(&m_service, &SmartHomeService::boardChanged, this, [this] { Q_EMIT changed(QUuid()); });
    m_secrets.read(QString(addressKey), [this](std::optional<QString> address) {
        m_address = address.value_or(QString());
        m_secrets.read(QString(tokenKey), [this](std::optional<QString> token) {
            m_token = token.value_or(QString());
            m_service.setAccount(m_address, m_token);
            Q_EMIT accountChanged();
        });
    });
}

void SmartHomeBehaviour::setAccount(const QString& address, const QString& token) {
    m_address = address.trimmed();
    if (!token.trimmed().isEmpty()) {
        m_token = token.trimmed();
        m_secrets.write(QString(tokenKey), m_token);
    }
    if (m_address.isEmpty()) {
        m_secrets.remove(QString(addressKey));
        m_secrets.remove(QString(tokenKey));
        m_token.clear();
    } else {
        m_secrets.write(QString(addressKey), m_address);
    }
    const QUrl before = m_service.address();
    m_service.setAccount(m_address, m_token);
    // The same account again is a request to try once more.
    if (m_service.address() == before) {
        m_service.reconnect();
    }
    Q_EMIT accountChanged();
}

void SmartHomeBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    bool inView = false;
    for (const BehaviourTile& tile : tiles) {
        inView = inView || tile.inView;
    }
    m_service.setActive(inView);
}

bool SmartHomeBehaviour::press(const WidgetInstance& tile, const QString& command) {
    Q_UNUSED(tile)
    if (command == reconnectCommand) {
        m_service.reconnect();
        return true;
    }
    if (!command.startsWith(togglePrefix)) {
        return false;
    }
    m_service.toggle(command.mid(togglePrefix.size()));
    return true;
}

QList<TileBehaviour::MenuItem> SmartHomeBehaviour::menuItems(const WidgetInstance& tile) const {
    Q_UNUSED(tile)
    const SmartHomeStatus status = m_service.board().status;
    if (status == SmartHomeStatus::noAccount || status == SmartHomeStatus::live) {
        return {};
    }
    return {{L("smarthome.reconnect", QStringLiteral("Reconnect Now")), QString(reconnectCommand)}};
}

} // namespace tw
