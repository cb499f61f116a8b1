// The face of every kind that has no face of its own yet: its symbol and name, laid out for the
// size, respecting the kind's chrome and bleed.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class GenericFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
};

} // namespace tw
