// The timer: the time left as a ring and digits, its label, and its controls on the tile (start
// or pause, reset, and the presets on the large size while it stands idle). A finished timer says
// when it ended and flashes while its alarm rings.
#pragma once

#include "faces/TimerKit.h"
#include "faces/WidgetFace.h"

namespace tw {

class TimerFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;
    // Nothing, between two moments after the end of a timer that no longer rings.
    QRectF changedRect(const QRectF& rect, const FaceContext& context, const QDateTime& before,
                       const QDateTime& after) const override;

    // The controls as the face lays them out in `rect` now.
    static QList<TimerKit::Control> controls(const QRectF& rect, const FaceContext& context);
};

} // namespace tw
