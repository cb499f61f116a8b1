// Pictures from a folder, edge to edge: the current one (a fade from the last while it turns),
// the person's caption or the file's name on a soft shade, and honest words for a folder that
// is missing or has no pictures.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class PhotosFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;
};

} // namespace tw
