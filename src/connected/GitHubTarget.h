// Whose activity a GitHub tile follows: a person ("octocat") or a repository ("owner/name").
#pragma once

#include <QString>

#include <optional>

namespace tw {

struct GitHubTarget {
    enum class Kind { user, repository };

    Kind kind = Kind::user;
    QString owner;
    // Empty for a person.
    QString repository;

    bool isRepository() const { return kind == Kind::repository; }
    // "octocat" or "owner/name", as the tile titles it and the service keys it.
    QString key() const;
    // The page a click on the title opens.
    QString webAddress() const;

    bool operator==(const GitHubTarget&) const = default;

    // Reads what a person typed: "octocat", "@octocat", "owner/name", or an address on
    // github.com; nullopt for anything GitHub would not accept as a name.
    static std::optional<GitHubTarget> parse(const QString& text);
};

} // namespace tw
