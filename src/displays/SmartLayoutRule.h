// A rule that switches the active layout profile by time of day, foreground application or
// connected display.
#pragma once

#include "displays/LayoutDisplay.h"

#include <QDateTime>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace tw {

// What a rule is judged on. The date's own time zone is the calendar the minutes are read in.
struct SmartLayoutContext {
    QDateTime date;
    std::optional<QString> activeApplicationBundleID;
    QList<LayoutDisplay> displays;
};

struct SmartLayoutRule {
    enum class Trigger { schedule, application, display };

    static constexpr int minutesPerDay = 24 * 60;

    QUuid id;
    QString name;
    QUuid profileID;
    bool isEnabled = true;
    Trigger trigger = Trigger::schedule;
    // Minutes of the day; equal means all day, a start after the end runs across midnight.
    int startMinute = 0;
    int endMinute = 0;
    QString applicationBundleID;
    QString displayID;
    QString displayName;

    bool matches(const SmartLayoutContext& context) const;

    static QString triggerRawValue(Trigger trigger);
    static std::optional<Trigger> triggerFromRawValue(const QString& raw);
    static QString triggerTitle(Trigger trigger);

    QJsonObject toJson() const;
    // Every key is required; a rule missing one gives nothing.
    static std::optional<SmartLayoutRule> fromJson(const QJsonValue& json);

    friend bool operator==(const SmartLayoutRule&, const SmartLayoutRule&) = default;
};

// The file "smart-layout-rules.json": the rules in the user's order.
struct SmartLayoutRulesDocument {
    static constexpr int currentVersion = 1;

    int version = currentVersion;
    QList<SmartLayoutRule> rules;

    QJsonObject toJson() const;
    // Lenient: an unreadable rule is dropped alone; nothing when the bytes are no JSON object.
    static std::optional<SmartLayoutRulesDocument> fromJson(const QByteArray& bytes);

    friend bool operator==(const SmartLayoutRulesDocument&,
                           const SmartLayoutRulesDocument&) = default;
};

} // namespace tw
