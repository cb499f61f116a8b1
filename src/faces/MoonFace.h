// The moon tonight: its lit shape as the observer's hemisphere sees it, the phase and how much is
// lit, when it rises and sets where the weather is, and the next full and new moons.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class MoonFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    // Only to learn the place, for rise and set.
    bool showsWeather(const WidgetSettings& settings) const override;

    // The direction on screen (radians, 0 to the right, counter-clockwise, y up) in which the
    // bright limb lies, from its position angle on the sky (from north through east): a
    // northern observer faces south with east to the left; a southern one sees it turned half
    // round.
    static double brightLimbDirection(double positionAngle, bool southern);
};

} // namespace tw
