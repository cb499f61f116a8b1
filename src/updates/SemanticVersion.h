// A version number as releases are named: "1.4.2", "v2.0.0-beta.3+build.7", compared by
// precedence (major, minor, patch, then pre-release; build metadata never counts).
#pragma once

#include <QString>
#include <QStringList>

#include <compare>
#include <optional>

namespace tw {

struct SemanticVersion {
    static constexpr qsizetype maxLength = 64;

    quint64 major = 0;
    quint64 minor = 0;
    quint64 patch = 0;
    // The dot-separated identifiers after "-"; empty for a release.
    QStringList preRelease;

    // Lenient about what people write: a leading "v", a missing minor or patch ("2", "2.1") and
    // surrounding spaces. Nullopt for anything else, numbers with leading zeros included.
    static std::optional<SemanticVersion> parse(const QString& text);

    bool isPreRelease() const { return !preRelease.isEmpty(); }
    // "1.4.2" or "1.4.2-beta.3".
    QString toString() const;

    std::strong_ordering operator<=>(const SemanticVersion& other) const;
    bool operator==(const SemanticVersion& other) const = default;
};

} // namespace tw
