// A colour an element takes while its number is below or above a threshold.
#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringView>

#include <optional>

namespace tw {

struct CustomColorRule {
    enum class When { below, above };

    When when = When::below;
    double value = 0;
    // "accent", "primary", "secondary", "positive", "negative", "warning" or "#RRGGBB".
    QString color;

    // All three keys are required; nullopt for anything less or for an unknown `when`.
    static std::optional<CustomColorRule> fromJson(const QJsonValue& json);
    QJsonObject toJson() const;

    bool operator==(const CustomColorRule&) const = default;
};

QString rawValue(CustomColorRule::When when);
std::optional<CustomColorRule::When> customColorRuleWhenFromRawValue(QStringView raw);
// "Below" and "Above", localized.
QString title(CustomColorRule::When when);

} // namespace tw
