// The unit converter: the category, the amount in one unit and what it comes to in another, a
// swap between them, and a key pad on the big size. Units and categories are chosen from a list
// drawn over the tile; every part answers clicks through `Spot::command`.
#pragma once

#include "faces/WidgetFace.h"
#include "tools/ConverterTile.h"

namespace tw {

class UnitConverterFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // The tile as its behaviour holds it, else as its settings keep it.
    static ConverterTile tileOf(const FaceContext& context);
};

} // namespace tw
