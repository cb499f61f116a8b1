#include "displays/SmartLayoutRule.h"

#include "model/JsonCoding.h"
#include "text/L.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace tw {

bool SmartLayoutRule::matches(const SmartLayoutContext& context) const {
    if (!isEnabled) {
        return false;
    }
    switch (trigger) {
    case Trigger::schedule: {
        const QTime time = context.date.time();
        const int now = time.isValid() ? time.hour() * 60 + time.minute() : 0;
        const int start = std::clamp(startMinute, 0, minutesPerDay - 1);
        const int end = std::clamp(endMinute, 0, minutesPerDay - 1);
        if (start == end) {
            return true;
        }
        return start < end ? (start <= now && now < end) : (now >= start || now < end);
    }
    case Trigger::application: {
        const QString wanted = applicationBundleID.trimmed();
        return !wanted.isEmpty() && context.activeApplicationBundleID &&
               wanted.compare(*context.activeApplicationBundleID, Qt::CaseInsensitive) == 0;
    }
    case Trigger::display:
        return std::any_of(context.displays.begin(), context.displays.end(),
                           [this](const LayoutDisplay& display) {
                               return (!displayID.isEmpty() && display.id == displayID) ||
                                      (!displayName.isEmpty() &&
                                       LayoutDisplay::namesMatch(display.name, displayName));
                           });
    }
    return false;
}

QString SmartLayoutRule::triggerRawValue(Trigger trigger) {
    switch (trigger) {
    case Trigger::schedule:
        return QStringLiteral("schedule");
    case Trigger::application:
        return QStringLiteral("application");
    case Trigger::display:
        return QStringLiteral("display");
    }
    return {};
}

std::optional<SmartLayoutRule::Trigger> SmartLayoutRule::triggerFromRawValue(const QString& raw) {
    for (const Trigger trigger : {Trigger::schedule, Trigger::application, Trigger::display}) {
        if (triggerRawValue(trigger) == raw) {
            return trigger;
        }
    }
    return std::nullopt;
}

QString SmartLayoutRule::triggerTitle(Trigger trigger) {
    switch (trigger) {
    case Trigger::schedule:
        return L("smart.trigger.time", QStringLiteral("Time of day"));
    case Trigger::application:
        return L("smart.trigger.app", QStringLiteral("Application"));
    case Trigger::display:
        return L("smart.trigger.display", QStringLiteral("Display"));
    }
    return {};
}

QJsonObject SmartLayoutRule::toJson() const {
    return QJsonObject{{QStringLiteral("id"), JsonCoding::encodeUuid(id)},
                       {QStringLiteral("name"), name},
                       {QStringLiteral("profileID"), JsonCoding::encodeUuid(profileID)},
                       {QStringLiteral("isEnabled"), isEnabled},
                       {QStringLiteral("trigger"), triggerRawValue(trigger)},
                       {QStringLiteral("startMinute"), startMinute},
                       {QStringLiteral("endMinute"), endMinute},
                       {QStringLiteral("applicationBundleID"), applicationBundleID},
                       {QStringLiteral("displayID"), displayID},
                       {QStringLiteral("displayName"), displayName}};
}

std::optional<SmartLayoutRule> SmartLayoutRule::fromJson(const QJsonValue& json) {
    const QJsonObject object = json.toObject();
    const auto string = [&object](const char* key) -> std::optional<QString> {
        const QJsonValue value = object.value(QLatin1String(key));
        return value.isString() ? std::optional(value.toString()) : std::nullopt;
    };
    const auto id = JsonCoding::decodeUuid(object.value(QStringLiteral("id")));
    const auto profileID = JsonCoding::decodeUuid(object.value(QStringLiteral("profileID")));
    const QJsonValue isEnabled = object.value(QStringLiteral("isEnabled"));
    const auto trigger = triggerFromRawValue(string("trigger").value_or(QString()));
    const auto start = JsonCoding::decodeInt(object.value(QStringLiteral("startMinute")));
    const auto end = JsonCoding::decodeInt(object.value(QStringLiteral("endMinute")));
    const auto name = string("name");
    const auto application = string("applicationBundleID");
    const auto displayID = string("displayID");
    const auto displayName = string("displayName");
    if (!id || !profileID || !isEnabled.isBool() || !trigger || !start || !end || !name ||
        !application || !displayID || !displayName) {
        return std::nullopt;
    }
    return SmartLayoutRule{*id,    *name, *profileID,   isEnabled.toBool(), *trigger,
                           *start, *end,  *application, *displayID,         *displayName};
}

QJsonObject SmartLayoutRulesDocument::toJson() const {
    QJsonArray array;
    for (const SmartLayoutRule& rule : rules) {
        array.append(rule.toJson());
    }
    return QJsonObject{{QStringLiteral("version"), version}, {QStringLiteral("rules"), array}};
}

std::optional<SmartLayoutRulesDocument>
SmartLayoutRulesDocument::fromJson(const QByteArray& bytes) {
    QJsonParseError error{};
    const QJsonDocument json = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !json.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = json.object();
    SmartLayoutRulesDocument document;
    document.version =
        JsonCoding::decodeInt(object.value(QStringLiteral("version"))).value_or(currentVersion);
    for (const auto& value : object.value(QStringLiteral("rules")).toArray()) {
        if (auto rule = SmartLayoutRule::fromJson(value)) {
            document.rules.append(std::move(*rule));
        }
    }
    return document;
}

} // namespace tw
