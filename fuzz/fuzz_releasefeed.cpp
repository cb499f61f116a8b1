// The release list: whatever bytes arrive, the decoder keeps to its caps, lists each version
// once and newest first, offers only web pages as links, and what the update check keeps
// between runs reads back the same.
#include "Require.h"
#include "updates/ReleaseFeed.h"

#include <QByteArray>

#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    for (const QString& language : {QStringLiteral("en"), QStringLiteral("de-CH")}) {
        const std::optional<tw::ReleaseFeed> feed = tw::ReleaseFeed::fromAnswer(bytes, language);
        if (!feed) {
            continue;
        }
        require(feed->releases.size() <= tw::ReleaseFeed::maxReleases, "too many releases");
        for (qsizetype i = 0; i < feed->releases.size(); ++i) {
            const tw::Release& release = feed->releases[i];
            require(i == 0 || feed->releases[i - 1].version > release.version,
                    "not newest first, or a version twice");
            require(release.notes.size() <= tw::Release::maxNotes, "too many notes");
            for (const QString& note : release.notes) {
                require(!note.isEmpty() && note.size() <= tw::Release::maxNoteLength,
                        "a note out of bounds");
            }
            require(release.page.isEmpty() ||
                        release.page.scheme().startsWith(QLatin1String("http")),
                    "a link that is no web page");
            require(tw::Release::fromJson(release.toJson(), language) == release,
                    "a kept release reads back differently");
            const auto again = tw::SemanticVersion::parse(release.version.toString());
            require(again && *again == release.version, "a version that does not read back");
        }
        const tw::SemanticVersion running{1, 0, 0, {}};
        if (const auto newest = feed->newest(running)) {
            require(!newest->version.isPreRelease(), "a pre-release offered to a release build");
        }
    }
    return 0;
}
