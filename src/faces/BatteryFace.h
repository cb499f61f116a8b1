// The battery: the charge as the hero figure with a battery or a ring, whether it charges, and the
// time to empty or to full; an honest state on a machine that runs on mains power alone.
#pragma once

#include "faces/WidgetFace.h"
#include "platform/PowerSource.h"

namespace tw {

class BatteryFace final : public WidgetFace {
public:
    // At or below this percentage the charge draws in the warning hue.
    static constexpr int lowPercent = 20;

    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    ReadingFeeds feeds(WidgetSize size, const WidgetSettings& settings) const override;
    QStringList styles() const override;

    // "Charging", "On battery", "Fully charged", "Not charging", "No battery".
    static QString stateText(const BatterySnapshot& battery);
    // "2 h 10 min left", "Full in 40 min", "On mains power" without a battery; empty when the
    // system has not said.
    static QString timeText(const BatterySnapshot& battery);
};

} // namespace tw
