// What the update check knows: when it last asked, what it found, and whether it is asking now.
#pragma once

#include "updates/Release.h"

#include <QDateTime>
#include <QList>

#include <optional>

namespace tw {

struct UpdateStatus {
    enum class Outcome {
        never,
        upToDate,
        available,
        failed,
    };

    Outcome outcome = Outcome::never;
    bool checking = false;
    // The last attempt, whatever came of it.
    std::optional<QDateTime> lastCheck;
    // Why the last attempt failed, for a person; empty otherwise.
    QString failure;
    // The versions newer than the one running, newest first; kept through a failed check.
    QList<Release> newer;

    const Release* available() const { return newer.isEmpty() ? nullptr : &newer.first(); }

    bool operator==(const UpdateStatus&) const = default;
};

} // namespace tw
