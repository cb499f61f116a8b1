// The flip clock: hours and minutes on split cards, and seconds on a third card where the tile is
// three or more cells wide.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class FlipClockFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;

    static bool showsSeconds(WidgetSize size);
};

} // namespace tw
