// The picture behind a weather tile's figures: the four conditions, with fog and thunder told
// apart from clouds and rain by the current WMO code.
#pragma once

#include "weather/WxCondition.h"

#include <QString>

#include <array>
#include <optional>

namespace tw {

enum class WxScene { clear, clouds, rain, snow, fog, thunder };

inline constexpr std::array<WxScene, 6> allWxScenes{
    WxScene::clear, WxScene::clouds, WxScene::rain, WxScene::snow, WxScene::fog, WxScene::thunder};

// "clear", "clouds", "rain", "snow", "fog", "thunder".
QString rawValue(WxScene scene);
std::optional<WxScene> wxSceneFromRawValue(QStringView raw);

// Fog for 45 and 48, thunder for 95 to 99, otherwise the condition's own scene; without a code
// the condition decides alone.
WxScene sceneFor(WxCondition condition, std::optional<int> code);

} // namespace tw
