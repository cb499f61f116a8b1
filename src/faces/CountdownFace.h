// The countdown: the time left until its "target", under its "title"; counts up once the moment
// has passed. A progress ring runs from "created" to the target where there is room.
#pragma once

#include "faces/WidgetFace.h"

#include <QDateTime>

#include <optional>

namespace tw {

class CountdownFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;

    // A moment stored in settings: ISO 8601 ("2026-12-24", "2026-12-24T18:00"; a date alone means
    // its midnight in the system zone) or seconds since 2001-01-01 UTC, the data files' form.
    static std::optional<QDateTime> moment(const QString& text);

    struct Parts {
        qint64 days = 0;
        int hours = 0;
        int minutes = 0;
        int seconds = 0;
        bool passed = false;
    };
    static Parts split(const QDateTime& now, const QDateTime& target);
};

} // namespace tw
