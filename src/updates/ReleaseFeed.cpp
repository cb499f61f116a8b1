#include "updates/ReleaseFeed.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace tw {

namespace {

// A list may hold many more members than are kept; reading stops here.
constexpr qsizetype maxMembersRead = 10 * ReleaseFeed::maxReleases;

} // namespace

std::optional<ReleaseFeed> ReleaseFeed::fromAnswer(const QByteArray& bytes,
                                                   const QString& language) {
    if (bytes.size() > maxBytes) {
        return std::nullopt;
    }
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    const QJsonValue list = document.object().value(QStringLiteral("releases"));
    if (!document.isObject() || !list.isArray()) {
        return std::nullopt;
    }
    ReleaseFeed feed;
    const QUrl page(document.object().value(QStringLiteral("url")).toString(), QUrl::StrictMode);
    if (page.isValid() && !page.host().isEmpty() &&
        (page.scheme() == QLatin1String("https") || page.scheme() == QLatin1String("http"))) {
        feed.page = page;
    }
    const QJsonArray members = list.toArray();
    for (qsizetype i = 0; i < std::min(members.size(), maxMembersRead); ++i) {
        std::optional<Release> release = Release::fromJson(members[i].toObject(), language);
        if (release &&
            std::none_of(feed.releases.begin(), feed.releases.end(),
                         [&](const Release& r) { return r.version == release->version; })) {
            feed.releases.append(std::move(*release));
        }
    }
    std::stable_sort(feed.releases.begin(), feed.releases.end(),
                     [](const Release& a, const Release& b) { return a.version > b.version; });
    if (feed.releases.size() > maxReleases) {
        feed.releases.resize(maxReleases);
    }
    return feed;
}

ReleaseFeed ReleaseFeed::shipped(const QString& language) {
    QFile file(QStringLiteral(":/releases/releases.json"));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return fromAnswer(file.readAll(), language).value_or(ReleaseFeed{});
}

std::optional<Release> ReleaseFeed::newest(const SemanticVersion& running) const {
    for (const Release& release : releases) {
        if (!release.version.isPreRelease() || running.isPreRelease()) {
            return release;
        }
    }
    return std::nullopt;
}

QList<Release> ReleaseFeed::between(const SemanticVersion& after,
                                    const SemanticVersion& upTo) const {
    QList<Release> found;
    for (const Release& release : releases) {
        if (release.version > after && release.version <= upTo &&
            (!release.version.isPreRelease() || upTo.isPreRelease())) {
            found.append(release);
        }
    }
    return found;
}

} // namespace tw
