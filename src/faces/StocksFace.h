// A share: its price, the day's change coloured by direction and the day's line where the size
// allows; the last price with its age while the service is out of reach, and what to type when
// the symbol is not known.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class StocksFace final : public WidgetFace {
public:
    // Minutes: the age of a price kept through a failure is counted in them.
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    bool opensSettingsOnClick(const FaceContext& context) const override;
};

} // namespace tw
