// The world clock: the local time and a fixed round of the world's cities, as many as the size
// holds, each with its offset from here; dials with day and night on the largest sizes.
#pragma once

#include "faces/WidgetFace.h"

#include <QStringList>

namespace tw {

class WorldClockFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;

    // The zones shown at `size`: the system zone first, then cities other than it.
    static QStringList zones(WidgetSize size);
    // "+9h", "−5h30", "" for the same offset.
    static QString offsetText(int seconds);
};

} // namespace tw
