#include "weather/WxScene.h"

namespace tw {

namespace {

constexpr std::array<const char*, 6> kRaw{"clear", "clouds", "rain", "snow", "fog", "thunder"};

} // namespace

QString rawValue(WxScene scene) {
    return QLatin1String(kRaw.at(static_cast<size_t>(scene)));
}

std::optional<WxScene> wxSceneFromRawValue(QStringView raw) {
    for (WxScene scene : allWxScenes) {
        if (raw == QLatin1String(kRaw.at(static_cast<size_t>(scene)))) {
            return scene;
        }
    }
    return std::nullopt;
}

WxScene sceneFor(WxCondition condition, std::optional<int> code) {
    if (code == 45 || code == 48) {
        return WxScene::fog;
    }
    if (code && *code >= 95 && *code <= 99) {
        return WxScene::thunder;
    }
    switch (condition) {
    case WxCondition::clear:
        return WxScene::clear;
    case WxCondition::rain:
        return WxScene::rain;
    case WxCondition::snow:
        return WxScene::snow;
    case WxCondition::clouds:
        break;
    }
    return WxScene::clouds;
}

} // namespace tw
