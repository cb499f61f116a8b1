#include "custom/CustomColorRule.h"

#include "custom/CustomWidgetDefinitionDecoding.h"
#include "platform/RawValues.h"
#include "text/L.h"

namespace tw {

namespace {

constexpr RawValues<CustomColorRule::When, 2> whenValues{{"below", "above"}};

} // namespace

std::optional<CustomColorRule> CustomColorRule::fromJson(const QJsonValue& json) {
    if (!json.isObject()) {
        return std::nullopt;
    }
    CustomDecoding::FieldReader read(json.toObject());
    const std::optional<QString> when = read.string(QLatin1String("when"));
    const std::optional<double> value = read.real(QLatin1String("value"));
    const std::optional<QString> color = read.string(QLatin1String("color"));
    if (read.failed() || !when || !value || !color) {
        return std::nullopt;
    }
    const std::optional<When> parsed = customColorRuleWhenFromRawValue(*when);
    if (!parsed) {
        return std::nullopt;
    }
    return CustomColorRule{*parsed, *value, *color};
}

QJsonObject CustomColorRule::toJson() const {
    return QJsonObject{{QLatin1String("when"), rawValue(when)},
                       {QLatin1String("value"), value},
                       {QLatin1String("color"), color}};
}

QString rawValue(CustomColorRule::When when) {
    return whenValues.of(when);
}

std::optional<CustomColorRule::When> customColorRuleWhenFromRawValue(QStringView raw) {
    return whenValues.parse(raw);
}

QString title(CustomColorRule::When when) {
    return when == CustomColorRule::When::below ? L("custom.rule.below", QStringLiteral("Below"))
                                                : L("custom.rule.above", QStringLiteral("Above"));
}

} // namespace tw
