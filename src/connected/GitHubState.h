// One GitHub tile's target as the service knows it: the activity last read and how the last
// fetch went.
#pragma once

#include "connected/GitHubActivity.h"

#include <QDateTime>
#include <QString>

namespace tw {

enum class GitHubStatus {
    // Nothing answered yet.
    loading,
    live,
    notFound,
    // GitHub refused the token (401): expired, revoked or mistyped.
    tokenRefused,
    // Asked to wait until `retryAt`; the last values stay.
    rateLimited,
    // No answer at all; the last values stay.
    offline,
    // An answer that was an error or could not be read; the last values stay.
    failed,
};

// Why notifications show or not.
enum class GitHubNotifications {
    // Reading them needs a token.
    needsToken,
    // The token's account is not the person the tile follows.
    notYours,
    // The token may not read them (a fine-grained token without the permission).
    refused,
    shown,
};

struct GitHubState {
    GitHubActivity activity;
    GitHubStatus status = GitHubStatus::loading;
    GitHubNotifications notifications = GitHubNotifications::needsToken;
    // When the activity was last read whole.
    QDateTime updated;
    // When a rate limit lifts.
    QDateTime retryAt;
    // One line for a person on a failure; empty otherwise.
    QString message;

    bool hasValues() const { return updated.isValid(); }

    bool operator==(const GitHubState&) const = default;
};

} // namespace tw
