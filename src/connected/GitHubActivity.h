// What a GitHub tile shows of a person or a repository: counts, the latest release, pull requests
// waiting for review and unread notifications. Any part may be unknown (nullopt, or an empty list
// with its count unknown).
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace tw {

// One line of a list: a pull request or a notification.
struct GitHubItem {
    QString title;
    // "owner/name".
    QString repository;
    // The pull request's or issue's number; 0 where there is none (a release, a discussion).
    int number = 0;
    // Who opened it, or why a notification came ("review_requested", "mention", ...).
    QString detail;
    QString url;
    QDateTime updated;

    bool operator==(const GitHubItem&) const = default;
};

struct GitHubRelease {
    QString tag;
    QString name;
    QDateTime published;
    QString url;
    bool prerelease = false;

    bool operator==(const GitHubRelease&) const = default;
};

struct GitHubActivity {
    // Lists keep at most this many lines; their counts stay whole.
    static constexpr int maxItems = 20;

    // "owner/name", or a person's login.
    QString title;
    // A repository's description, or a person's name.
    QString description;
    std::optional<int> stars;
    std::optional<int> forks;
    std::optional<int> openIssues;
    std::optional<int> followers;
    std::optional<int> publicRepositories;
    // A repository's newest release; nullopt also when it has none (`hasNoRelease`).
    std::optional<GitHubRelease> release;
    bool hasNoRelease = false;
    std::optional<int> reviewCount;
    QList<GitHubItem> reviews;
    std::optional<int> notificationCount;
    QList<GitHubItem> notifications;

    bool operator==(const GitHubActivity&) const = default;
};

} // namespace tw
