// Day progress: how much of today has passed, as a percentage, a ring or bar, and the hours left.
#pragma once

#include "faces/WidgetFace.h"

#include <QDateTime>

namespace tw {

class DayProgressFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;

    // The part of the calendar day of `now` that has passed, 0...1 (days of 23 or 25 hours
    // included).
    static double fraction(const QDateTime& now);
};

} // namespace tw
