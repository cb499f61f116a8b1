// The "What's new" window's turn: due once after the first start of a new version, with the
// notes of the versions since the one that ran before.
#pragma once

#include "updates/Release.h"

#include <QList>
#include <QString>

namespace tw {

class Defaults;
struct ReleaseFeed;

class WhatsNew {
public:
    // The version that ran before the update; present while the window is due.
    static inline const QString pendingKey = QStringLiteral("tarnwick.whatsNew.pending");

    // On the first start of a new version: `previous` ran last (empty when no record says).
    static void recordUpdate(Defaults& defaults, const QString& previous);
    static bool isPending(const Defaults& defaults);
    // What the window shows: the versions after the previous one up to `running`, newest first;
    // the running version's alone when the previous is unknown. Empty after a downgrade.
    static QList<Release> pendingNotes(const Defaults& defaults, const ReleaseFeed& shipped,
                                       const QString& running);
    static void markShown(Defaults& defaults);
};

} // namespace tw
