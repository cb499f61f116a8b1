// The quote of the day: the words as large as the tile allows, in a book face or a plain one,
// and who said them; a click shows another.
#pragma once

#include "faces/WidgetFace.h"
#include "workspace/Quote.h"

namespace tw {

class QuoteFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // The quote the tile shows on the context's day.
    static Quote quoteOf(const FaceContext& context);
};

} // namespace tw
