// GitHub's REST API for the tiles that follow a person or a repository: a few requests per
// target every `pace`, each with its ETag so that an unchanged answer costs nothing, an optional
// token, and a pause for as long as a rate limit asks.
#pragma once

#include "connected/GitHubState.h"
#include "connected/GitHubTarget.h"
#include "net/HttpResponse.h"

#include <QDateTime>
#include <QHash>
#include <QObject>

#include <chrono>
#include <memory>

namespace tw {

class Clock;
class Endpoints;
class HttpClient;

class GitHubService final : public QObject {
    Q_OBJECT
public:
    static constexpr std::chrono::seconds pace{300};
    // After a failure that was no refusal, a target is asked again sooner than its pace.
    static constexpr std::chrono::seconds retryAfterFailure{60};
    static constexpr std::chrono::milliseconds timeout{15'000};
    static constexpr qint64 maxBytes = 2 * 1024 * 1024;
    // ETags and bodies kept at most; all go when there would be more.
    static constexpr int maxCached = 64;

    struct Services {
        // All must outlive the service.
        HttpClient& http;
        const Endpoints& endpoints;
        const Clock& clock;
    };

    enum class Refresh { ifDue, now };

    explicit GitHubService(const Services& services, QObject* parent = nullptr);
    ~GitHubService() override;

    // An empty token reads public data only. A new token forgets what the old one read.
    void setToken(const QString& token);
    bool hasToken() const { return !m_token.isEmpty(); }

    // The state of a target by `GitHubTarget::key`; a loading state for one never asked for.
    GitHubState state(const QString& key) const;
    // Until when a rate limit keeps every request back; invalid when none does.
    QDateTime heldUntil() const { return m_heldUntil; }

    // Fetches the target unless a fetch of it is under way, a rate limit holds, or (ifDue) its
    // last fetch is younger than its pace.
    void refresh(const GitHubTarget& target, Refresh when = Refresh::ifDue);

Q_SIGNALS:
    // The state of the target of `key` changed.
    void stateChanged(const QString& key);

private:
    struct Run;
    enum class Part { main, stars, release, reviews, viewer, notifications };

    void request(const std::shared_ptr<Run>& run, Part part, const QString& path);
    void take(const std::shared_ptr<Run>& run, Part part, const QString& url,
              const HttpResponse& response);
    void finish(Run& run);

    Services m_services;
    QString m_token;
    QHash<QString, GitHubState> m_states;
    QHash<QString, QDateTime> m_nextDue;
    QHash<QString, std::shared_ptr<Run>> m_runs;
    struct Cached {
        QByteArray etag;
        QByteArray body;
    };
    QHash<QString, Cached> m_cache;
    QDateTime m_heldUntil;
};

// When a refused answer lets requests start again: a spent rate limit's reset time, else its
// Retry-After; nullopt for a refusal that is no rate limit (a forbidden resource). Within one
// second and one hour of `now`.
std::optional<QDateTime> gitHubRetryAt(const HttpResponse& response, const QDateTime& now);

} // namespace tw
