// The pomodoro: the phase in its colour, the time left as a ring and digits, the work rounds of
// the set as dots, and its controls on the tile (start or pause, the next phase, reset).
#pragma once

#include "faces/TimerKit.h"
#include "faces/WidgetFace.h"

namespace tw {

enum class PomodoroPhase;

class PomodoroFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    static QList<TimerKit::Control> controls(const QRectF& rect, const FaceContext& context);
    // Tomato red for work, green for the short break, blue for the long one.
    static QColor color(PomodoroPhase phase);
};

} // namespace tw
