#include "updates/WhatsNew.h"

#include "platform/Defaults.h"
#include "updates/ReleaseFeed.h"

namespace tw {

void WhatsNew::recordUpdate(Defaults& defaults, const QString& previous) {
    defaults.setValue(pendingKey, previous);
}

bool WhatsNew::isPending(const Defaults& defaults) {
    return defaults.contains(pendingKey);
}

QList<Release> WhatsNew::pendingNotes(const Defaults& defaults, const ReleaseFeed& shipped,
                                      const QString& running) {
    const std::optional<SemanticVersion> upTo = SemanticVersion::parse(running);
    if (!isPending(defaults) || !upTo) {
        return {};
    }
    if (const auto after = SemanticVersion::parse(defaults.value(pendingKey).toString())) {
        return shipped.between(*after, *upTo);
    }
    QList<Release> current;
    for (const Release& release : shipped.releases) {
        if (release.version == *upTo) {
            current.append(release);
        }
    }
    return current;
}

void WhatsNew::markShown(Defaults& defaults) {
    defaults.remove(pendingKey);
}

} // namespace tw
