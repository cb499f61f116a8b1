// The toolbox tile: a round button for each action the desktop offers (lock, displays off,
// screenshot, do-not-disturb, which shows whether it is on), named where there is room.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class ToolboxFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;
};

} // namespace tw
