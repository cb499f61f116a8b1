// The clock: digital, or analog when its "style" setting is "analog", in the time zone of its
// "zone" setting; "seconds" set to "false" hides the seconds and lets it sleep between minutes.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class ClockFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    QStringList styles() const override {
        return {QStringLiteral("digital"), QStringLiteral("analog")};
    }

    static bool isAnalog(const WidgetSettings& settings);
    // Whether seconds are on view at this size with these settings.
    static bool showsSeconds(WidgetSize size, const WidgetSettings& settings);

private:
    static void paintDigital(QPainter& painter, const QRectF& rect, const FaceContext& context);
    static void paintAnalog(QPainter& painter, const QRectF& rect, const FaceContext& context);
};

} // namespace tw
