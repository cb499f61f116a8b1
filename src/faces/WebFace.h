// A web page in a glass frame: the picture the tile's page last drew, with its host and whether
// it is loading in a pill at the foot. Without a page yet it says what it waits for or what went
// wrong (never finished, failed, no helper); a click on such a tile tries again. Previews and
// pictures draw a made-up page.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class WebFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;
    bool opensSettingsOnClick(const FaceContext& context) const override;
};

} // namespace tw
