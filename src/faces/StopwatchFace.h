// The stopwatch: the time counted (with hundredths once stopped, where the person asked for
// them), running or stopped, and its controls on the tile (start or stop, lap while running,
// reset while stopped); the large size lists the laps with their splits, newest first.
#pragma once

#include "faces/TimerKit.h"
#include "faces/WidgetFace.h"

namespace tw {

class StopwatchFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    static QList<TimerKit::Control> controls(const QRectF& rect, const FaceContext& context);
};

} // namespace tw
