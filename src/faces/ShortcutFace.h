// The shortcut tile: the icon of what it opens (an app's own, a file type's, or a symbol for an
// address or a command) with its title and, where there is room, what exactly it opens; the
// whole tile is the button.
#pragma once

#include "faces/WidgetFace.h"

namespace tw {

class ShortcutFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    bool opensSettingsOnClick(const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;
};

} // namespace tw
