// The simple clock: hours and minutes as large as the tile allows, the date where there is room.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class SimpleClockFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
};

} // namespace tw
