// The apps tile: the chosen applications' icons in a grid, as large as the tile allows, with
// their names where there is room; a click on one starts it.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

struct AppTileEntry;

class AppsFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    bool opensSettingsOnClick(const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;
};

} // namespace tw
