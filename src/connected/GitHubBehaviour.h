// The GitHub tiles on the desktop: follows the targets of the tiles in view at the service's
// pace, keeps the token in the keychain, and offers "Refresh Now".
#pragma once

#include "connected/GitHubService.h"
#include "model/TileBehaviour.h"
#include "platform/ScheduledTask.h"

namespace tw {

class Scheduler;
class SecretStore;

class GitHubBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    // The keychain entry of the token.
    static constexpr QLatin1StringView tokenKey{"github.token"};
    // How often the tiles in view ask the service, which holds each target to its own pace.
    static constexpr std::chrono::seconds check{30};
    static constexpr QLatin1StringView refreshCommand{"refresh"};

    // Reads the token from `secrets` at once; all must outlive the behaviour.
    GitHubBehaviour(GitHubService& service, Scheduler& scheduler, SecretStore& secrets,
                    QObject* parent = nullptr);

    const GitHubService& service() const { return m_service; }
    GitHubState state(const QString& key) const { return m_service.state(key); }
    bool hasToken() const { return m_service.hasToken(); }
    // Keeps a new token (empty: none) in the keychain and reads with it from now on.
    void setToken(const QString& token);

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

private:
    void refreshInView(GitHubService::Refresh when);

    GitHubService& m_service;
    Scheduler& m_scheduler;
    SecretStore& m_secrets;
    QList<GitHubTarget> m_inView;
    ScheduledTask m_check;
};

} // namespace tw
