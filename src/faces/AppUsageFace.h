// The apps a person had in front: the total of the range, bars with each app's icon (or each
// category's symbol), and from 2×2 up the goal of the day as a ring; words that say counting
// has just begun while there is nothing to show.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

struct AppUsageView;

class AppUsageFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;

    // The view the tile shows: the host's, or a sample one in previews; null when nothing was
    // counted yet.
    static const AppUsageView* shown(const FaceContext& context, AppUsageView& sample);
    // "2h 05m", "45m", "<1m".
    static QString durationText(double seconds);
};

} // namespace tw
