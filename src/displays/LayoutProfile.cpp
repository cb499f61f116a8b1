#include "displays/LayoutProfile.h"

#include "model/JsonCoding.h"
#include "text/L.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <algorithm>

namespace tw {

QUuid LayoutProfile::defaultID() {
    return QUuid(QStringLiteral("00000000-0000-4000-8000-000000000001"));
}

QString LayoutProfile::displayName() const {
    if (isDefault && name == QLatin1String("Default")) {
        return L("layouts.defaultProfile", QStringLiteral("Default"));
    }
    return name;
}

QJsonObject LayoutProfile::toJson() const {
    return QJsonObject{{QStringLiteral("id"), JsonCoding::encodeUuid(id)},
                       {QStringLiteral("name"), name},
                       {QStringLiteral("isDefault"), isDefault},
                       {QStringLiteral("createdAt"), JsonCoding::encodeDate(createdAt)},
                       {QStringLiteral("updatedAt"), JsonCoding::encodeDate(updatedAt)},
                       {QStringLiteral("snapshot"), snapshot.toJson()}};
}

std::optional<LayoutProfile> LayoutProfile::fromJson(const QJsonValue& json) {
    const QJsonObject object = json.toObject();
    const auto id = JsonCoding::decodeUuid(object.value(QStringLiteral("id")));
    const QJsonValue name = object.value(QStringLiteral("name"));
    const QJsonValue isDefault = object.value(QStringLiteral("isDefault"));
    const auto createdAt = JsonCoding::decodeDate(object.value(QStringLiteral("createdAt")));
    const auto updatedAt = JsonCoding::decodeDate(object.value(QStringLiteral("updatedAt")));
    auto snapshot = LayoutProfileSnapshot::fromJson(object.value(QStringLiteral("snapshot")));
    if (!id || !name.isString() || !isDefault.isBool() || !createdAt || !updatedAt || !snapshot) {
        return std::nullopt;
    }
    return LayoutProfile{*id,        name.toString(), isDefault.toBool(),
                         *createdAt, *updatedAt,      std::move(*snapshot)};
}

QJsonObject LayoutProfilesDocument::toJson() const {
    QJsonArray array;
    for (const LayoutProfile& profile : profiles) {
        array.append(profile.toJson());
    }
    return QJsonObject{{QStringLiteral("version"), version},
                       {QStringLiteral("activeProfileID"), JsonCoding::encodeUuid(activeProfileID)},
                       {QStringLiteral("profiles"), array}};
}

std::optional<LayoutProfilesDocument> LayoutProfilesDocument::fromJson(const QByteArray& bytes) {
    QJsonParseError error{};
    const QJsonDocument json = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !json.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = json.object();
    LayoutProfilesDocument document;
    document.version = JsonCoding::decodeInt(object.value(QStringLiteral("version"))).value_or(0);
    document.activeProfileID =
        JsonCoding::decodeUuid(object.value(QStringLiteral("activeProfileID"))).value_or(QUuid());
    for (const auto& value : object.value(QStringLiteral("profiles")).toArray()) {
        if (auto profile = LayoutProfile::fromJson(value)) {
            document.profiles.append(std::move(*profile));
        }
    }
    if (document.profiles.isEmpty()) {
        return std::nullopt;
    }
    return document;
}

bool LayoutProfilesDocument::repair() {
    if (profiles.isEmpty()) {
        return false;
    }
    const LayoutProfilesDocument before = *this;
    // Repeated ids go first, so that the default is chosen among profiles that keep theirs.
    QSet<QUuid> seen;
    for (LayoutProfile& profile : profiles) {
        if (seen.contains(profile.id)) {
            profile.id = QUuid::createUuid();
            profile.isDefault = false;
        }
        seen.insert(profile.id);
    }
    const auto byId = std::find_if(profiles.begin(), profiles.end(), [](const LayoutProfile& p) {
        return p.id == LayoutProfile::defaultID();
    });
    const auto flagged = std::find_if(profiles.begin(), profiles.end(),
                                      [](const LayoutProfile& p) { return p.isDefault; });
    const qsizetype chosen = byId != profiles.end()      ? byId - profiles.begin()
                             : flagged != profiles.end() ? flagged - profiles.begin()
                                                         : 0;
    for (qsizetype i = 0; i < profiles.size(); ++i) {
        profiles[i].isDefault = i == chosen;
    }
    if (!seen.contains(activeProfileID)) {
        activeProfileID = profiles[chosen].id;
    }
    version = currentVersion;
    return !(*this == before);
}

} // namespace tw
