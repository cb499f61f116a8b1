// The smart home tile on the desktop: the link runs while the tile is in view, a click on a card
// toggles its entity, and the address and token live in the keychain.
#pragma once

#include "connected/SmartHomeService.h"
#include "model/TileBehaviour.h"

namespace tw {

class SecretStore;

class SmartHomeBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    static constexpr QLatin1StringView addressKey{"smarthome.address"};
    static constexpr QLatin1StringView tokenKey{"smarthome.token"};
    // A card's command: this and the entity id.
    static constexpr QLatin1StringView togglePrefix{"toggle:"};
    static constexpr QLatin1StringView reconnectCommand{"reconnect"};

    // Reads the account from `secrets` at once; both must outlive the behaviour.
    SmartHomeBehaviour(SmartHomeService& service, SecretStore& secrets, QObject* parent = nullptr);

    SmartHomeService& service() { return m_service; }
    const SmartHomeBoard& board() const { return m_service.board(); }
    // The address as the person gave it; empty before the keychain answered or without one.
    QString address() const { return m_address; }
    bool hasToken() const { return !m_token.isEmpty(); }
    // Keeps the account in the keychain (an empty token keeps the one there) and connects anew.
    void setAccount(const QString& address, const QString& token);

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

Q_SIGNALS:
    // The keychain answered, or the account changed.
    void accountChanged();

private:
    SmartHomeService& m_service;
    SecretStore& m_secrets;
    QString m_address;
    QString m_token;
};

} // namespace tw
