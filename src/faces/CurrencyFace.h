// Exchange rates: what one unit of the base buys of each target, the central bank's reference
// rates of the day they name; the last rates with their age while the service is out of reach.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class CurrencyFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
};

} // namespace tw
