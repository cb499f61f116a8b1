// The camera as a mirror, edge to edge: the newest picture turned left for right (unless the
// person turned that off). Until the person allows the camera it says how; without a picture it
// says why (none, in use, not permitted, unplugged), and a click tries again. Previews and
// pictures draw a figure on a soft light instead of anyone's face.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class MirrorFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;
    bool opensSettingsOnClick(const FaceContext& context) const override;
};

} // namespace tw
