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

    // Within one minute a digital clock changes only its seconds.
    QRectF changedRect(const QRectF& rect, const FaceContext& context, const QDateTime& before,
                       const QDateTime& after) const override;

    static bool isAnalog(const WidgetSettings& settings);
    // Whether seconds are on view at this size with these settings.
    static bool showsSeconds(WidgetSize size, const WidgetSettings& settings);

    // The three lines of the small digital clock: the weekday (or the city) over the time over
    // the day half and the date; the weekday is named once.
    struct SmallLines {
        QString top;
        QString time;
        QString bottom;
    };
    static SmallLines smallLines(const QDateTime& now, bool h24, const QString& city);

private:
    struct TimeRow;
    static TimeRow timeRow(const QRectF& rect, const FaceContext& context, const QTime& time);
    static void paintDigital(QPainter& painter, const QRectF& rect, const FaceContext& context);
    static void paintAnalog(QPainter& painter, const QRectF& rect, const FaceContext& context);
};

} // namespace tw
