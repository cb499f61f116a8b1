// GitHub's answers: whatever bytes arrive, counts are never negative, lists stay within their cap
// and count no fewer than they list, and every link offered is a page on github.com.
#include "Require.h"
#include "connected/GitHubDecoding.h"

#include <QByteArray>
#include <QUrl>

#include <cstdint>

using tw::fuzz::require;

namespace {

void requireCount(const std::optional<int>& count) {
    require(!count || *count >= 0, "a negative count");
}

void requireLink(const QString& url) {
    require(url.isEmpty() || QUrl(url).host() == QLatin1String("github.com"),
            "a link away from GitHub");
}

void requireList(const std::optional<tw::GitHubItemList>& list) {
    if (!list) {
        return;
    }
    require(list->items.size() <= tw::GitHubActivity::maxItems, "a list past its cap");
    require(list->total >= list->items.size(), "a total below the lines listed");
    for (const tw::GitHubItem& item : list->items) {
        require(item.number >= 0, "a negative number");
        require(item.title.size() <= 300, "a title past its cap");
        requireLink(item.url);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const auto repository = tw::decodeGitHubRepository(bytes)) {
        require(!repository->fullName.isNull(), "a repository without a name");
        requireCount(repository->stars);
        requireCount(repository->forks);
        requireCount(repository->openIssues);
    }
    if (const auto user = tw::decodeGitHubUser(bytes)) {
        requireCount(user->followers);
        requireCount(user->publicRepositories);
    }
    requireCount(tw::decodeGitHubStarSum(bytes));
    if (const auto release = tw::decodeGitHubRelease(bytes)) {
        requireLink(release->url);
    }
    requireList(tw::decodeGitHubPulls(bytes));
    requireList(tw::decodeGitHubSearch(bytes));
    requireList(tw::decodeGitHubNotifications(bytes));
    return 0;
}
