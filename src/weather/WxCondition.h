// The four conditions all weather is reduced to; each picks a symbol, a text and a scene.
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace tw {

enum class WxCondition { clear, clouds, rain, snow };

inline constexpr std::array<WxCondition, 4> allWxConditions{WxCondition::clear, WxCondition::clouds,
                                                            WxCondition::rain, WxCondition::snow};

// "clear", "clouds", "rain", "snow".
QString rawValue(WxCondition condition);
// nullopt for anything but one of the four raw values, compared exactly.
std::optional<WxCondition> wxConditionFromRawValue(QStringView raw);

QString symbol(WxCondition condition);
// The localized name ("weather.cond.clouds" reads "Partly Cloudy").
QString text(WxCondition condition);
// A WMO weather code as one of the four; codes outside the table are clouds.
WxCondition conditionForWmoCode(int code);
// The tile's symbol: a clear sky at night shows the moon.
QString conditionSymbol(WxCondition condition, bool night);

} // namespace tw
