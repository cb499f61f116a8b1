// The clipboard's history: the latest clippings, texts on a line each and pictures as
// thumbnails, with how long ago each was copied; a click copies one back, the button at the top
// clears the history.
#pragma once

#include "faces/WidgetFace.h"
#include "workspace/Clipping.h"

namespace tw {

class ClipboardFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // "now", "5 min", "3 h", else the day.
    static QString age(const QDateTime& copied, const QDateTime& now);
};

} // namespace tw
