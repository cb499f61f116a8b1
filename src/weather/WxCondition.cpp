#include "weather/WxCondition.h"

#include "platform/RawValues.h"
#include "text/L.h"

namespace tw {

namespace {

constexpr RawValues<WxCondition, 4> rawValues{{"clear", "clouds", "rain", "snow"}};

struct ConditionFacts {
    const char* symbol;
    const char* textKey;
    const char* defaultText;
};

// Indexed by the enumeration's value.
constexpr std::array<ConditionFacts, 4> facts{{
    {"sun.max.fill", "weather.cond.clear", "Clear"},
    {"cloud.sun.fill", "weather.cond.clouds", "Partly Cloudy"},
    {"cloud.rain.fill", "weather.cond.rain", "Rain"},
    {"cloud.snow.fill", "weather.cond.snow", "Snow"},
}};

const ConditionFacts& factsOf(WxCondition condition) {
    return facts.at(static_cast<std::size_t>(condition));
}

} // namespace

QString rawValue(WxCondition condition) {
    return rawValues.of(condition);
}

std::optional<WxCondition> wxConditionFromRawValue(QStringView raw) {
    return rawValues.parse(raw);
}

QString symbol(WxCondition condition) {
    return QLatin1String(factsOf(condition).symbol);
}

QString text(WxCondition condition) {
    const ConditionFacts& f = factsOf(condition);
    return L(f.textKey, QString::fromUtf8(f.defaultText));
}

WxCondition conditionForWmoCode(int code) {
    if (code == 0 || code == 1) {
        return WxCondition::clear;
    }
    if ((code >= 51 && code <= 67) || (code >= 80 && code <= 82) || (code >= 95 && code <= 99)) {
        return WxCondition::rain;
    }
    if ((code >= 71 && code <= 77) || code == 85 || code == 86) {
        return WxCondition::snow;
    }
    return WxCondition::clouds;
}

QString conditionSymbol(WxCondition condition, bool night) {
    if (night && condition == WxCondition::clear) {
        return QStringLiteral("moon.stars.fill");
    }
    return symbol(condition);
}

} // namespace tw
