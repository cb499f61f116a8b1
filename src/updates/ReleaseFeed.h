// The release list the project publishes as a static JSON file, and the notes this build ships
// in the same form.
#pragma once

#include "updates/Release.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <optional>

namespace tw {

struct ReleaseFeed {
    // The newest form this build writes; later forms only add members, so they are read too.
    static constexpr int format = 1;
    static constexpr qint64 maxBytes = 1024 * 1024;
    static constexpr qsizetype maxReleases = 100;

    // Where all versions are described; empty when the list gives none.
    QUrl page;
    // Newest first, each version once.
    QList<Release> releases;

    // Nullopt for anything that is not a JSON object with a "releases" list, or is larger than
    // maxBytes. A member without a readable version is dropped; of a version listed twice the
    // first stands; beyond maxReleases the oldest go.
    static std::optional<ReleaseFeed> fromAnswer(const QByteArray& bytes, const QString& language);
    // The notes compiled into this build.
    static ReleaseFeed shipped(const QString& language);

    // The newest version offered to a build running `running`: a pre-release only to a
    // pre-release build. Nullopt when the list is empty.
    std::optional<Release> newest(const SemanticVersion& running) const;
    // The versions after `after` up to and including `upTo`, newest first; pre-releases only
    // when `upTo` is one.
    QList<Release> between(const SemanticVersion& after, const SemanticVersion& upTo) const;

    bool operator==(const ReleaseFeed&) const = default;
};

} // namespace tw
