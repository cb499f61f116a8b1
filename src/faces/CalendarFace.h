// The person's next events: the date and what comes next at every size, a list by day on the
// larger ones with a month beside it on the widest. Until a calendar is chosen the tile keeps
// its plain look and says where to choose one.
#pragma once

#include "faces/WidgetFace.h"
#include "platform/CalendarItems.h"

namespace tw {

class CalendarFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    bool showsCalendar(const WidgetSettings& settings) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // The events of `items` not yet over at `now`, in start order.
    static QList<CalendarEventItem> upcoming(const QList<CalendarEventItem>& items,
                                             const QDateTime& now);
    // The made-up events previews show, around `now`.
    static QList<CalendarEventItem> sampleEvents(const QDateTime& now);
};

} // namespace tw
