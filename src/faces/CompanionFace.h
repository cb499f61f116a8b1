// The desktop companion: a small cat drawn with paths, no tile around it. It breathes, blinks
// and swings its tail; watches the pointer with its eyes and head; purrs with hearts after a
// poke; curls up asleep at night with its tail round it; and yawns awake.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class CompanionFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    double sceneFps(const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // The box the cat sits in within the tile's `rect`.
    static QRectF catBox(const QRectF& rect);
};

} // namespace tw
