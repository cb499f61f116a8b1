#include "connected/GitHubBehaviour.h"

#include "platform/Scheduler.h"
#include "platform/SecretStore.h"
#include "text/L.h"

namespace tw {

namespace {

std::optional<GitHubTarget> targetOf(const WidgetInstance& tile) {
    return GitHubTarget::parse(tile.setting(QStringLiteral("target")).value_or(QString()));
}

} // namespace

GitHubBehaviour::GitHubBehaviour(GitHubService& service, Scheduler& scheduler, SecretStore& secrets,
                                 QObject* parent)
    : TileBehaviour(parent)
    , m_service(service)
    , m_scheduler(scheduler)
    , m_secrets(secrets) {
    connect(&m_service, &GitHubService::stateChanged, this,
            [this](const QString&) { Q_EMIT changed(QUuid()); });
    m_secrets.read(QString(tokenKey), [this](std::optional<QString> token) {
        if (token && !token->isEmpty()) {
            m_service.setToken(*token);
            refreshInView(GitHubService::Refresh::now);
        }
    });
}

void GitHubBehaviour::setToken(const QString& token) {
    if (token.trimmed().isEmpty()) {
        m_secrets.remove(QString(tokenKey));
    } else {
        m_secrets.write(QString(tokenKey), token.trimmed());
    }
    m_service.setToken(token);
    refreshInView(GitHubService::Refresh::now);
}

void GitHubBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QList<GitHubTarget> inView;
    for (const BehaviourTile& tile : tiles) {
        const std::optional<GitHubTarget> target = targetOf(tile.instance);
        if (tile.inView && target && !inView.contains(*target)) {
            inView.append(*target);
        }
    }
    m_inView = inView;
    if (m_inView.isEmpty()) {
        m_check.cancel();
        return;
    }
    refreshInView(GitHubService::Refresh::ifDue);
    if (!m_check.isActive()) {
        m_check = m_scheduler.repeating(check, std::chrono::seconds(5), this,
                                        [this] { refreshInView(GitHubService::Refresh::ifDue); });
    }
}

void GitHubBehaviour::refreshInView(GitHubService::Refresh when) {
    for (const GitHubTarget& target : std::as_const(m_inView)) {
        m_service.refresh(target, when);
    }
}

bool GitHubBehaviour::press(const WidgetInstance& tile, const QString& command) {
    const std::optional<GitHubTarget> target = targetOf(tile);
    if (command != refreshCommand || !target) {
        return false;
    }
    m_service.refresh(*target, GitHubService::Refresh::now);
    return true;
}

QList<TileBehaviour::MenuItem> GitHubBehaviour::menuItems(const WidgetInstance& tile) const {
    if (!targetOf(tile)) {
        return {};
    }
    return {{L("github.refreshNow", QStringLiteral("Refresh Now")), QString(refreshCommand)}};
}

} // namespace tw
