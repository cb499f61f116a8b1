// A coin's price with the day's change coloured by direction; a large tile lists the most traded
// others under it, a banner sets them side by side. The line is of the prices seen since the
// program started (the service gives no chart), drawn once there are two.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class CryptoFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
};

} // namespace tw
