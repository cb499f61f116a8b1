// Lenient readers of GitHub's REST answers: a field of the wrong type is left out, a body that is
// no JSON of the expected shape gives nullopt, lists are cut to `GitHubActivity::maxItems`.
#pragma once

#include "connected/GitHubActivity.h"

#include <QByteArray>

#include <optional>

namespace tw {

struct GitHubRepositoryFacts {
    QString fullName;
    QString description;
    std::optional<int> stars;
    std::optional<int> forks;
    std::optional<int> openIssues;
};

struct GitHubUserFacts {
    QString login;
    QString name;
    std::optional<int> followers;
    std::optional<int> publicRepositories;
};

struct GitHubItemList {
    // The whole count where the answer names one (a search), else the lines read.
    int total = 0;
    QList<GitHubItem> items;
};

// GET /repos/{owner}/{name}
std::optional<GitHubRepositoryFacts> decodeGitHubRepository(const QByteArray& body);
// GET /users/{login} and GET /user
std::optional<GitHubUserFacts> decodeGitHubUser(const QByteArray& body);
// GET /users/{login}/repos: the stars of the repositories listed, summed.
std::optional<int> decodeGitHubStarSum(const QByteArray& body);
// GET /repos/{owner}/{name}/releases/latest
std::optional<GitHubRelease> decodeGitHubRelease(const QByteArray& body);
// GET /repos/{owner}/{name}/pulls: the open ones that are not drafts wait for review.
std::optional<GitHubItemList> decodeGitHubPulls(const QByteArray& body);
// GET /search/issues
std::optional<GitHubItemList> decodeGitHubSearch(const QByteArray& body);
// GET /notifications and /repos/{owner}/{name}/notifications: the unread ones.
std::optional<GitHubItemList> decodeGitHubNotifications(const QByteArray& body);

} // namespace tw
