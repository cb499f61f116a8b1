// A calm night sky: a deep sky with faint fixed stars kept as one picture per size, stars that
// twinkle and drift slowly across it in three depths, and now and then a shooting star.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class StarfieldFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    double sceneFps(const FaceContext& context) const override;
};

} // namespace tw
