#include "connected/GitHubDecoding.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <cmath>

namespace tw {

namespace {

constexpr int maxText = 300;

QString text(const QJsonValue& value) {
    return value.isString() ? value.toString().left(maxText).simplified() : QString();
}

std::optional<int> count(const QJsonValue& value) {
    const double number = value.toDouble(-1);
    if (!value.isDouble() || !std::isfinite(number) || number < 0 || number > 2e9) {
        return std::nullopt;
    }
    return static_cast<int>(number);
}

QDateTime time(const QJsonValue& value) {
    return QDateTime::fromString(value.toString(), Qt::ISODate);
}

// Only web pages on GitHub are offered to a click; an API address is turned into its page.
QString pageAddress(const QJsonValue& value) {
    QUrl url(value.toString(), QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != QLatin1String("https")) {
        return {};
    }
    if (url.host() == QLatin1String("api.github.com")) {
        QString path = url.path();
        if (!path.startsWith(QLatin1String("/repos/"))) {
            return {};
        }
        path.remove(0, 6);
        path.replace(QLatin1String("/pulls/"), QLatin1String("/pull/"));
        url.setHost(QStringLiteral("github.com"));
        url.setPath(path);
    }
    return url.host() == QLatin1String("github.com") ? url.toString() : QString();
}

std::optional<QJsonObject> object(const QByteArray& body) {
    const QJsonDocument document = QJsonDocument::fromJson(body);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

std::optional<QJsonArray> array(const QByteArray& body) {
    const QJsonDocument document = QJsonDocument::fromJson(body);
    return document.isArray() ? std::optional(document.array()) : std::nullopt;
}

// "https://api.github.com/repos/owner/name" → "owner/name".
QString repositoryOf(const QJsonValue& apiAddress) {
    const QString path = QUrl(apiAddress.toString()).path();
    return path.startsWith(QLatin1String("/repos/")) ? path.mid(7).section(QLatin1Char('/'), 0, 1)
                                                     : QString();
}

GitHubItem issueItem(const QJsonObject& issue) {
    GitHubItem item;
    item.title = text(issue.value(u"title"));
    item.number = count(issue.value(u"number")).value_or(0);
    item.detail = text(issue.value(u"user").toObject().value(u"login"));
    item.url = pageAddress(issue.value(u"html_url"));
    item.updated = time(issue.value(u"updated_at"));
    const QJsonObject base = issue.value(u"base").toObject().value(u"repo").toObject();
    item.repository = base.contains(u"full_name") ? text(base.value(u"full_name"))
                                                  : repositoryOf(issue.value(u"repository_url"));
    return item;
}

} // namespace

std::optional<GitHubRepositoryFacts> decodeGitHubRepository(const QByteArray& body) {
    const std::optional<QJsonObject> repo = object(body);
    if (!repo || !repo->value(u"full_name").isString()) {
        return std::nullopt;
    }
    return GitHubRepositoryFacts{.fullName = text(repo->value(u"full_name")),
                                 .description = text(repo->value(u"description")),
                                 .stars = count(repo->value(u"stargazers_count")),
                                 .forks = count(repo->value(u"forks_count")),
                                 .openIssues = count(repo->value(u"open_issues_count"))};
}

std::optional<GitHubUserFacts> decodeGitHubUser(const QByteArray& body) {
    const std::optional<QJsonObject> user = object(body);
    if (!user || !user->value(u"login").isString()) {
        return std::nullopt;
    }
    return GitHubUserFacts{.login = text(user->value(u"login")),
                           .name = text(user->value(u"name")),
                           .followers = count(user->value(u"followers")),
                           .publicRepositories = count(user->value(u"public_repos"))};
}

std::optional<int> decodeGitHubStarSum(const QByteArray& body) {
    const std::optional<QJsonArray> repos = array(body);
    if (!repos) {
        return std::nullopt;
    }
    qint64 sum = 0;
    for (const QJsonValue& repo : *repos) {
        sum += count(repo.toObject().value(u"stargazers_count")).value_or(0);
    }
    return static_cast<int>(std::min<qint64>(sum, 2'000'000'000));
}

std::optional<GitHubRelease> decodeGitHubRelease(const QByteArray& body) {
    const std::optional<QJsonObject> release = object(body);
    if (!release || !release->value(u"tag_name").isString()) {
        return std::nullopt;
    }
    return GitHubRelease{.tag = text(release->value(u"tag_name")),
                         .name = text(release->value(u"name")),
                         .published = time(release->value(u"published_at")),
                         .url = pageAddress(release->value(u"html_url")),
                         .prerelease = release->value(u"prerelease").toBool()};
}

std::optional<GitHubItemList> decodeGitHubPulls(const QByteArray& body) {
    const std::optional<QJsonArray> pulls = array(body);
    if (!pulls) {
        return std::nullopt;
    }
    GitHubItemList list;
    for (const QJsonValue& value : *pulls) {
        const QJsonObject pull = value.toObject();
        if (pull.value(u"draft").toBool() || pull.value(u"state").toString() == u"closed" ||
            !pull.value(u"title").isString()) {
            continue;
        }
        ++list.total;
        if (list.items.size() < GitHubActivity::maxItems) {
            list.items.append(issueItem(pull));
        }
    }
    return list;
}

std::optional<GitHubItemList> decodeGitHubSearch(const QByteArray& body) {
    const std::optional<QJsonObject> result = object(body);
    if (!result || !result->value(u"items").isArray()) {
        return std::nullopt;
    }
    GitHubItemList list;
    for (const QJsonValue& value : result->value(u"items").toArray()) {
        if (list.items.size() < GitHubActivity::maxItems && value.toObject().contains(u"title")) {
            list.items.append(issueItem(value.toObject()));
        }
    }
    list.total = std::max(count(result->value(u"total_count")).value_or(0),
                          static_cast<int>(list.items.size()));
    return list;
}

std::optional<GitHubItemList> decodeGitHubNotifications(const QByteArray& body) {
    const std::optional<QJsonArray> threads = array(body);
    if (!threads) {
        return std::nullopt;
    }
    GitHubItemList list;
    for (const QJsonValue& value : *threads) {
        const QJsonObject thread = value.toObject();
        if (thread.contains(u"unread") && !thread.value(u"unread").toBool()) {
            continue;
        }
        ++list.total;
        if (list.items.size() >= GitHubActivity::maxItems) {
            continue;
        }
        const QJsonObject subject = thread.value(u"subject").toObject();
        const QJsonObject repository = thread.value(u"repository").toObject();
        GitHubItem item;
        item.title = text(subject.value(u"title"));
        item.repository = text(repository.value(u"full_name"));
        item.detail = text(thread.value(u"reason"));
        item.url = pageAddress(subject.value(u"url"));
        if (item.url.isEmpty()) {
            item.url = pageAddress(repository.value(u"html_url"));
        }
        item.number = subject.value(u"url").toString().section(QLatin1Char('/'), -1).toInt();
        item.updated = time(thread.value(u"updated_at"));
        list.items.append(item);
    }
    return list;
}

} // namespace tw
