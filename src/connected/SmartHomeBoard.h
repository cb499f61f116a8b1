// What the smart home tiles show: the link's state and the entities Home Assistant told of.
#pragma once

#include "connected/HaEntity.h"

#include <QDateTime>
#include <QHash>
#include <QSet>
#include <QString>

namespace tw {

enum class SmartHomeStatus {
    // No address or no token yet.
    noAccount,
    // An account, and no tile that shows it: no link.
    idle,
    connecting,
    // States arrive as they change.
    live,
    // No answer from the address; the link tries again, waiting longer each time.
    unreachable,
    // Home Assistant refused the token; nothing more is tried until the account changes.
    unauthorised,
    // An answer that was an error or could not be read; tried again like an unreachable one.
    failed,
};

struct SmartHomeBoard {
    SmartHomeStatus status = SmartHomeStatus::noAccount;
    // Every entity read, by id.
    QHash<QString, HaEntity> entities;
    // Whether the list of states has been read once, so that an id missing from it is unknown.
    bool statesRead = false;
    // Toggles sent and not yet seen in a state change.
    QSet<QString> pending;
    // Entities whose last toggle Home Assistant refused, with its words.
    QHash<QString, QString> refused;
    // One line for a person on a failure; empty otherwise.
    QString message;
    // When the states were last known to be current (live, or the last read).
    QDateTime updated;
    // When the next attempt starts while unreachable or failed.
    QDateTime retryAt;

    bool operator==(const SmartHomeBoard&) const = default;
};

} // namespace tw
