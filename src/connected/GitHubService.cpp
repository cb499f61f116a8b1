#include "connected/GitHubService.h"

#include "connected/ConnectedLog.h"
#include "connected/GitHubDecoding.h"
#include "market/FetchGate.h"
#include "net/Endpoints.h"
#include "net/HttpClient.h"
#include "platform/Clock.h"
#include "text/L.h"

#include <QTimeZone>

namespace tw {

struct GitHubService::Run {
    QString key;
    GitHubTarget target;
    GitHubActivity activity;
    int pending = 0;
    // The gravest failure of the run's requests; live when none failed.
    GitHubStatus status = GitHubStatus::live;
    QString message;
    QDateTime retryAt;
    bool notificationsRefused = false;
    std::optional<QString> viewer;
    std::optional<GitHubItemList> notifications;
};

namespace {

// The order in which failures of one run outrank each other.
int gravity(GitHubStatus status) {
    switch (status) {
    case GitHubStatus::tokenRefused:
        return 5;
    case GitHubStatus::rateLimited:
        return 4;
    case GitHubStatus::notFound:
        return 3;
    case GitHubStatus::offline:
        return 2;
    case GitHubStatus::failed:
        return 1;
    case GitHubStatus::live:
    case GitHubStatus::loading:
        break;
    }
    return 0;
}

QString pathOf(const QString& url) {
    return QUrl(url).path();
}

} // namespace

GitHubService::GitHubService(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services) {}

GitHubService::~GitHubService() = default;

void GitHubService::setToken(const QString& token) {
    const QString trimmed = token.trimmed();
    if (trimmed == m_token) {
        return;
    }
    m_token = trimmed;
    m_cache.clear();
    m_nextDue.clear();
    // Answers under way were read with the old token; they end unheard.
    m_runs.clear();
    const QList<QString> keys = m_states.keys();
    for (const QString& key : keys) {
        GitHubState& state = m_states[key];
        state.activity.notificationCount.reset();
        state.activity.notifications.clear();
        state.notifications =
            hasToken() ? GitHubNotifications::shown : GitHubNotifications::needsToken;
        if (state.status == GitHubStatus::tokenRefused) {
            state.status = GitHubStatus::loading;
            state.message.clear();
        }
        Q_EMIT stateChanged(key);
    }
}

GitHubState GitHubService::state(const QString& key) const {
    GitHubState state = m_states.value(key);
    if (!m_states.contains(key) && hasToken()) {
        state.notifications = GitHubNotifications::shown;
    }
    return state;
}

void GitHubService::refresh(const GitHubTarget& target, Refresh when) {
    const QString key = target.key();
    const QDateTime now = m_services.clock.now();
    if (m_runs.contains(key) || (m_heldUntil.isValid() && now < m_heldUntil)) {
        return;
    }
    const QDateTime due = m_nextDue.value(key);
    if (when == Refresh::ifDue && due.isValid() && now < due) {
        return;
    }
    m_nextDue.insert(key, now.addSecs(pace.count()));
    auto run = std::make_shared<Run>();
    run->key = key;
    run->target = target;
    run->activity = m_states.value(key).activity;
    m_runs.insert(key, run);

    const QString owner = QString::fromUtf8(QUrl::toPercentEncoding(target.owner));
    if (target.isRepository()) {
        const QString repo = QStringLiteral("/repos/") + owner + QLatin1Char('/') +
                             QString::fromUtf8(QUrl::toPercentEncoding(target.repository));
        request(run, Part::main, repo);
        request(run, Part::release, repo + QStringLiteral("/releases/latest"));
        request(run, Part::reviews, repo + QStringLiteral("/pulls?state=open&per_page=50"));
        if (hasToken()) {
            request(run, Part::notifications, repo + QStringLiteral("/notifications?per_page=50"));
        }
    } else {
        request(run, Part::main, QStringLiteral("/users/") + owner);
        request(run, Part::stars,
                QStringLiteral("/users/") + owner +
                    QStringLiteral("/repos?per_page=100&sort=pushed"));
        request(run, Part::reviews,
                QStringLiteral("/search/issues?per_page=20&q=is:open+is:pr+archived:false+"
                               "review-requested:") +
                    owner);
        if (hasToken()) {
            request(run, Part::viewer, QStringLiteral("/user"));
            request(run, Part::notifications, QStringLiteral("/notifications?per_page=50"));
        }
    }
}

void GitHubService::request(const std::shared_ptr<Run>& run, Part part, const QString& path) {
    HttpRequest request;
    const qsizetype mark = path.indexOf(QLatin1Char('?'));
    request.url = m_services.endpoints.url(Endpoints::Service::GitHub, path.left(mark));
    if (mark >= 0) {
        request.url.setQuery(path.mid(mark + 1));
    }
    request.timeout = timeout;
    request.maxBytes = maxBytes;
    request.headers = {{"Accept", "application/vnd.github+json"},
                       {"X-GitHub-Api-Version", "2022-11-28"}};
    const QString url = request.url.toString();
    if (const auto cached = m_cache.constFind(url); cached != m_cache.cend()) {
        request.headers.append({"If-None-Match", cached->etag});
    }
    if (hasToken()) {
        request.headers.append({"Authorization", "Bearer " + m_token.toUtf8()});
    }
    ++run->pending;
    m_services.http.get(request, this, [this, run, part, url](const HttpResponse& response) {
        take(run, part, url, response);
    });
}

void GitHubService::take(const std::shared_ptr<Run>& run, Part part, const QString& url,
                         const HttpResponse& response) {
    if (m_runs.value(run->key) != run) {
        return;
    }
    const QDateTime now = m_services.clock.now();
    const auto fail = [&](GitHubStatus status, const QString& message) {
        if (gravity(status) > gravity(run->status)) {
            run->status = status;
            run->message = message;
        }
    };
    QByteArray body;
    if (response.error != HttpError::None) {
        qCInfo(lcGitHub) << "no answer from" << pathOf(url) << response.message;
        const bool unreachable = response.error == HttpError::Offline ||
                                 response.error == HttpError::Network ||
                                 response.error == HttpError::Timeout;
        fail(unreachable ? GitHubStatus::offline : GitHubStatus::failed, response.message);
    } else if (response.status == 304 && m_cache.contains(url)) {
        body = m_cache.value(url).body;
    } else if (response.isSuccess()) {
        body = response.body;
        const QByteArray etag = response.header("etag");
        if (!etag.isEmpty()) {
            if (m_cache.size() >= maxCached) {
                m_cache.clear();
            }
            m_cache.insert(url, {etag, body});
        }
    } else if (response.status == 401) {
        fail(GitHubStatus::tokenRefused,
             L("github.tokenRefused", QStringLiteral("GitHub refused the token")));
    } else if (const std::optional<QDateTime> retryAt = gitHubRetryAt(response, now);
               retryAt && (response.status == 403 || response.status == 429)) {
        qCInfo(lcGitHub) << "rate limited until" << retryAt->toString(Qt::ISODate);
        m_heldUntil = std::max(m_heldUntil.isValid() ? m_heldUntil : *retryAt, *retryAt);
        run->retryAt = m_heldUntil;
        fail(GitHubStatus::rateLimited,
             L("github.rateLimited", QStringLiteral("GitHub asks to wait a while")));
    } else if (response.status == 404 && part == Part::release) {
        run->activity.release.reset();
        run->activity.hasNoRelease = true;
    } else if ((response.status == 403 || response.status == 404) && part == Part::notifications) {
        run->notificationsRefused = true;
    } else if (response.status == 404 && part == Part::main) {
        fail(GitHubStatus::notFound,
             run->target.isRepository()
                 ? L("github.noRepository", QStringLiteral("No such repository"))
                 : L("github.noUser", QStringLiteral("No such person on GitHub")));
    } else if (response.status != 404) {
        qCInfo(lcGitHub) << pathOf(url) << "answered" << response.status;
        fail(GitHubStatus::failed,
             L("github.error", QStringLiteral("GitHub answered %1")).arg(response.status));
    }

    if (!body.isNull()) {
        GitHubActivity& activity = run->activity;
        bool readable = true;
        switch (part) {
        case Part::main:
            if (run->target.isRepository()) {
                const auto facts = decodeGitHubRepository(body);
                readable = facts.has_value();
                if (facts) {
                    activity.title = facts->fullName;
                    activity.description = facts->description;
                    activity.stars = facts->stars;
                    activity.forks = facts->forks;
                    activity.openIssues = facts->openIssues;
                }
            } else {
                const auto facts = decodeGitHubUser(body);
                readable = facts.has_value();
                if (facts) {
                    activity.title = facts->login;
                    activity.description = facts->name;
                    activity.followers = facts->followers;
                    activity.publicRepositories = facts->publicRepositories;
                }
            }
            break;
        case Part::stars: {
            const auto stars = decodeGitHubStarSum(body);
            readable = stars.has_value();
            activity.stars = stars ? stars : activity.stars;
            break;
        }
        case Part::release: {
            const auto release = decodeGitHubRelease(body);
            readable = release.has_value();
            if (release) {
                activity.release = release;
                activity.hasNoRelease = false;
            }
            break;
        }
        case Part::reviews: {
            const auto list =
                run->target.isRepository() ? decodeGitHubPulls(body) : decodeGitHubSearch(body);
            readable = list.has_value();
            if (list) {
                activity.reviewCount = list->total;
                activity.reviews = list->items;
            }
            break;
        }
        case Part::viewer: {
            const auto viewer = decodeGitHubUser(body);
            readable = viewer.has_value();
            run->viewer = viewer ? std::optional(viewer->login) : std::nullopt;
            break;
        }
        case Part::notifications:
            run->notifications = decodeGitHubNotifications(body);
            readable = run->notifications.has_value();
            break;
        }
        if (!readable) {
            qCInfo(lcGitHub) << "unreadable answer from" << pathOf(url);
            fail(GitHubStatus::failed,
                 L("github.unreadable", QStringLiteral("GitHub's answer could not be read")));
        }
    }
    if (--run->pending == 0) {
        finish(*run);
    }
}

void GitHubService::finish(Run& run) {
    const QDateTime now = m_services.clock.now();
    const std::shared_ptr<Run> keep = m_runs.take(run.key);
    GitHubState state = m_states.value(run.key);
    GitHubActivity activity = run.activity;
    if (!hasToken()) {
        state.notifications = GitHubNotifications::needsToken;
    } else if (run.notificationsRefused) {
        state.notifications = GitHubNotifications::refused;
    } else if (!run.target.isRepository() && run.viewer &&
               run.viewer->compare(run.target.owner, Qt::CaseInsensitive) != 0) {
        state.notifications = GitHubNotifications::notYours;
    } else {
        state.notifications = GitHubNotifications::shown;
    }
    if (state.notifications == GitHubNotifications::shown && run.notifications) {
        activity.notificationCount = run.notifications->total;
        activity.notifications = run.notifications->items;
    } else if (state.notifications != GitHubNotifications::shown) {
        activity.notificationCount.reset();
        activity.notifications.clear();
    }

    state.status = run.status;
    state.message = run.message;
    state.retryAt = run.retryAt;
    if (run.status == GitHubStatus::live) {
        state.activity = activity;
        state.updated = now;
    } else if (run.status == GitHubStatus::notFound) {
        state.activity = {};
        state.updated = {};
    } else if (state.hasValues()) {
        state.activity = activity;
    }
    if (run.status == GitHubStatus::offline || run.status == GitHubStatus::failed) {
        m_nextDue.insert(run.key, now.addSecs(retryAfterFailure.count()));
    }
    if (state != m_states.value(run.key) || !m_states.contains(run.key)) {
        m_states.insert(run.key, state);
        Q_EMIT stateChanged(run.key);
    }
}

std::optional<QDateTime> gitHubRetryAt(const HttpResponse& response, const QDateTime& now) {
    const auto within = [&](const QDateTime& at) {
        return std::clamp(at, now.addSecs(1), now.addSecs(3600));
    };
    if (response.header("x-ratelimit-remaining").trimmed() == "0") {
        bool number = false;
        const qint64 reset = response.header("x-ratelimit-reset").trimmed().toLongLong(&number);
        return within(number ? QDateTime::fromSecsSinceEpoch(reset, now.timeZone())
                             : now.addSecs(60));
    }
    if (!response.header("retry-after").isEmpty() || response.status == 429) {
        return within(now.addSecs(retryAfter(response, now).count()));
    }
    return std::nullopt;
}

} // namespace tw
