// Year progress: how much of the year has passed, with the day of the year and, on the larger
// tiles, one dot per day.
#pragma once

#include "faces/WidgetFace.h"

#include <QDateTime>

namespace tw {

class YearProgressFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;

    // The part of the calendar year of `now` that has passed, 0...1.
    static double fraction(const QDateTime& now);
};

} // namespace tw
