// The person's reminders: what is open, by due date, with the completed ones of the last week
// dimmed and struck through when the tile asks for them; two columns on the widest sizes.
#pragma once

#include "faces/WidgetFace.h"
#include "platform/CalendarItems.h"

namespace tw {

class RemindersFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    bool showsCalendar(const WidgetSettings& settings) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // The made-up reminders previews show; never written anywhere.
    static QList<ReminderItem> sampleReminders(const QDateTime& now);
};

} // namespace tw
