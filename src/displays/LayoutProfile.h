// A named, complete arrangement the user can save and switch to; its snapshot lets the positions
// follow when it is activated on another display set.
#pragma once

#include "displays/LayoutProfileSnapshot.h"

#include <QDateTime>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QUuid>

#include <optional>

namespace tw {

struct LayoutProfile {
    QUuid id;
    QString name;
    bool isDefault = false;
    QDateTime createdAt;
    QDateTime updatedAt;
    LayoutProfileSnapshot snapshot;

    // The one profile every installation has, whatever else is deleted.
    static QUuid defaultID();

    // The stored name, except that the untouched default profile reads in the user's language.
    QString displayName() const;

    QJsonObject toJson() const;
    // All six keys are required; a profile missing one, or with an unreadable snapshot, gives
    // nothing.
    static std::optional<LayoutProfile> fromJson(const QJsonValue& json);

    friend bool operator==(const LayoutProfile&, const LayoutProfile&) = default;
};

// The file "layout-profiles.json": the profiles in the user's order and which one is active.
struct LayoutProfilesDocument {
    static constexpr int currentVersion = 1;

    int version = currentVersion;
    QUuid activeProfileID;
    QList<LayoutProfile> profiles;

    QJsonObject toJson() const;
    // Lenient: an unreadable profile is dropped alone; nothing when the bytes are no JSON object
    // or no profile is left.
    static std::optional<LayoutProfilesDocument> fromJson(const QByteArray& bytes);

    // Exactly one default (the one with the default id, else the first flagged, else the first),
    // distinct ids, an active id that exists, the current version. Gives whether anything changed.
    bool repair();

    friend bool operator==(const LayoutProfilesDocument&, const LayoutProfilesDocument&) = default;
};

} // namespace tw
